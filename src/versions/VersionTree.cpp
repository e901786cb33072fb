#include "versions/VersionTree.h"

#include <QHeaderView>
#include <QLocale>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
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

/// With seconds: several versions may be kept within a minute.
QString textOf(QTime time)
{
    const QString format = QLocale().timeFormat(QLocale::ShortFormat);
    return QLocale().toString(time, QString(format).replace(u"mm"_s, u"mm:ss"_s));
}

/// Rows that are easy to hit, and days that look like what they are, although they cannot be chosen.
class VersionDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        constexpr int margins = 10; // pixels
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, margins);
    }

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->state |= QStyle::State_Enabled;
    }
};

} // namespace

VersionTree::VersionTree(QWidget *parent)
    : QTreeWidget(parent)
{
    constexpr int timeWidth = 96; // pixels
    setItemDelegate(new VersionDelegate(this));
    setHeaderLabels({u"Time"_s, u"What Changed"_s});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    header()->resizeSection(0, timeWidth);
    connect(this, &QTreeWidget::currentItemChanged, this, [this] {
        isChosenByUser = true;
        emit choiceChanged();
    });
}

void VersionTree::show(const QList<Version> &versions)
{
    const qint64 former = isChosenByUser && chosen() ? chosen()->number : 0;
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
    QFont bold = font();
    bold.setBold(true);
    item->setFont(0, bold);
}

QTreeWidgetItem *VersionTree::appendVersion(const Version &version)
{
    const QTime time = Calendar::localTime(version.time).time();
    const QString change = version.summary.text();
    auto *item = new QTreeWidgetItem(this, {textOf(time), change});
    item->setData(0, numberRole, version.number);
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
