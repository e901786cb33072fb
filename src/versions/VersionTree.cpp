#include "versions/VersionTree.h"

#include <QHeaderView>
#include <QLocale>
#include <QSignalBlocker>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

constexpr int numberRole = Qt::UserRole;

QString titleOf(QDate day)
{
    const QString date = QLocale().toString(day, QLocale::LongFormat);
    const qint64 past = day.daysTo(QDate::currentDate());
    return past == 0 ? u"Today, "_s + date : past == 1 ? u"Yesterday, "_s + date : date;
}

} // namespace

VersionTree::VersionTree(QWidget *parent)
    : QTreeWidget(parent)
{
    constexpr int timeWidth = 80; // pixels
    setHeaderLabels({u"Time"_s, u"What Changed"_s});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    header()->resizeSection(0, timeWidth);
    connect(this, &QTreeWidget::currentItemChanged, this, &VersionTree::choiceChanged);
}

void VersionTree::show(const QList<Version> &versions)
{
    const qint64 former = chosen() ? chosen()->number : 0;
    QTreeWidgetItem *current = nullptr;
    {
        const QSignalBlocker blocker(this); // the choice is told once, at the end
        clear();
        byNumber.clear();
        QDate day;
        for (auto version = versions.crbegin(); version != versions.crend(); ++version) {
            const QDate ofVersion = Calendar::localTime(version->time).date();
            if (std::exchange(day, ofVersion) != ofVersion)
                appendDay(ofVersion);
            QTreeWidgetItem *item = appendVersion(*version);
            byNumber.insert(version->number, *version);
            if (!current || version->number == former)
                current = item;
        }
        setCurrentItem(current);
    }
    emit choiceChanged();
}

void VersionTree::appendDay(QDate day)
{
    auto *item = new QTreeWidgetItem(this, {titleOf(day)});
    item->setFirstColumnSpanned(true);
    item->setFlags(Qt::NoItemFlags); // the arrow keys pass over it
    item->setForeground(0, palette().brush(QPalette::Text));
    QFont bold = font();
    bold.setBold(true);
    item->setFont(0, bold);
}

QTreeWidgetItem *VersionTree::appendVersion(const Version &version)
{
    const QDateTime time = Calendar::localTime(version.time);
    const QString change = version.summary.text();
    auto *item = new QTreeWidgetItem(this, {QLocale().toString(time.time(), QLocale::ShortFormat), change});
    item->setData(0, numberRole, version.number);
    item->setToolTip(0, QLocale().toString(time.time(), u"HH:mm:ss"));
    item->setToolTip(1, Qt::convertFromPlainText(change));
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren);
    return item;
}

std::optional<Version> VersionTree::chosen() const
{
    const auto version =
        byNumber.constFind(currentItem() ? currentItem()->data(0, numberRole).toLongLong() : 0);
    return version == byNumber.cend() ? std::nullopt : std::optional(*version);
}
