#include "widgets/WindowSize.h"

#include "platform/Diagnostics.h"

#include <QDialog>

using namespace Qt::StringLiterals;

static QString keyOf(const QString &name, const QString &what)
{
    return name.isEmpty() ? what : name + u'.' + what;
}

QString windowSize::path(const QString &stateFolder)
{
    return stateFolder + u"/window.ini"_s;
}

std::optional<int> windowSize::number(const IniFile &file, const QString &key, int least, int most)
{
    bool isNumber = false;
    const int value = file.text(key).value_or(QString()).toInt(&isNumber);
    return isNumber && value >= least && value <= most ? std::optional(value) : std::nullopt;
}

void windowSize::restore(QWidget &window, const IniFile &file, const QString &name)
{
    constexpr int widest = 10'000; // pixels
    const auto width = number(file, keyOf(name, u"width"_s), window.minimumWidth(), widest);
    const auto height = number(file, keyOf(name, u"height"_s), window.minimumHeight(), widest);
    window.resize(width.value_or(window.width()), height.value_or(window.height()));
    if (number(file, keyOf(name, u"maximized"_s), 1, 1))
        window.setWindowState(Qt::WindowMaximized);
}

windowSize::Values windowSize::valuesOf(const QWidget &window, const QString &name)
{
    const QSize size = window.isMaximized() ? window.normalGeometry().size() : window.size();
    return {{keyOf(name, u"width"_s), QString::number(size.width())},
            {keyOf(name, u"height"_s), QString::number(size.height())},
            {keyOf(name, u"maximized"_s), QString::number(int(window.isMaximized()))}};
}

void windowSize::keep(QDialog &dialog, const QString &stateFolder)
{
    restore(dialog, IniFile(path(stateFolder)), dialog.objectName());
    QObject::connect(&dialog, &QDialog::finished, &dialog, [&dialog, file = path(stateFolder)] {
        if (!IniFile(file).store(valuesOf(dialog, dialog.objectName())))
            diagnostics::line("Window state not kept");
    });
}
