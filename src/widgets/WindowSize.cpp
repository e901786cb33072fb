#include "widgets/WindowSize.h"

#include <QDialog>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QString widthKey = u"width"_s;
const QString heightKey = u"height"_s;
const QString maximizedKey = u"maximized"_s;

} // namespace

QString windowSize::path(const QString &stateFolder)
{
    return stateFolder + u"/window.ini"_s;
}

std::optional<int> windowSize::number(const QSettings &settings, const QString &key, int least, int most)
{
    bool isNumber = false;
    const int value = settings.value(key).toString().toInt(&isNumber);
    return isNumber && value >= least && value <= most ? std::optional(value) : std::nullopt;
}

void windowSize::restore(QWidget &window, const QSettings &settings)
{
    constexpr int widest = 10'000; // pixels
    const auto width = number(settings, widthKey, window.minimumWidth(), widest);
    const auto height = number(settings, heightKey, window.minimumHeight(), widest);
    window.resize(width.value_or(window.width()), height.value_or(window.height()));
    if (number(settings, maximizedKey, 1, 1))
        window.setWindowState(Qt::WindowMaximized);
}

void windowSize::save(const QWidget &window, QSettings &settings)
{
    const QSize size = window.isMaximized() ? window.normalGeometry().size() : window.size();
    settings.setValue(widthKey, size.width());
    settings.setValue(heightKey, size.height());
    settings.setValue(maximizedKey, int(window.isMaximized()));
}

void windowSize::keep(QDialog &dialog, const QString &stateFolder)
{
    const auto settings = std::make_shared<QSettings>(path(stateFolder), QSettings::IniFormat);
    settings->beginGroup(dialog.objectName());
    restore(dialog, *settings);
    QObject::connect(&dialog, &QDialog::finished, &dialog, [&dialog, settings] { save(dialog, *settings); });
}
