#include "mainwindow/WindowState.h"

#include <QHeaderView>
#include <QMainWindow>

using namespace Qt::StringLiterals;

namespace {
const QString geometryKey = u"geometry"_s;
const QString headerKey = u"taskColumns"_s;
} // namespace

WindowState::WindowState(const QString &stateFolder)
    : settings(stateFolder + u"/window.ini"_s, QSettings::IniFormat)
{
}

void WindowState::restore(QMainWindow &window, QHeaderView &header) const
{
    window.restoreGeometry(settings.value(geometryKey).toByteArray());
    header.restoreState(settings.value(headerKey).toByteArray());
}

void WindowState::save(const QMainWindow &window, const QHeaderView &header)
{
    settings.setValue(geometryKey, window.saveGeometry());
    settings.setValue(headerKey, header.saveState());
}
