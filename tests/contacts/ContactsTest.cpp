#include "contacts/ViewControllerClientMgmt.h"
#include "contacts/ViewControllerTeamMgmt.h"
#include "support/CapturedOutput.h"
#include "support/TestProgram.h"

#include <QAbstractItemModelTester>
#include <QPushButton>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTableView>

using namespace Qt::StringLiterals;

namespace {

/// What a context opened now sees, such as `Anna=123 -=- `: an absent text is shown as a hyphen.
template <typename Record = Clients>
QString stored(const QString &folder)
{
    PersistentContainer container(contactModel(), folder);
    container.loadPersistentStores();
    QString texts;
    for (const ManagedObject &object : container.viewContext().fetch(Record::fetchRequest())) {
        const Contact contact(object);
        texts += contact.name().value_or(u"-"_s) + u'=' + contact.phoneNo().value_or(u"-"_s) + u' ';
    }
    return texts;
}

/// A connection to the store file that knows nothing of the program.
class RawStore
{
public:
    explicit RawStore(const QString &folder)
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"raw"_s);
        database.setDatabaseName(folder + u"/Model.sqlite"_s);
        if (!database.open())
            qFatal("no raw connection");
    }
    ~RawStore() { QSqlDatabase::removeDatabase(u"raw"_s); }

    bool run(const QString &sql) const { return QSqlQuery(QSqlDatabase::database(u"raw"_s)).exec(sql); }
};

} // namespace

class ContactsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { home = std::make_unique<QTemporaryDir>(); }

    void contextsSeeTheStoreAsItWasFetched()
    {
        PersistentContainer first(contactModel(), home->path());
        PersistentContainer second(contactModel(), home->path());
        first.loadPersistentStores();
        second.loadPersistentStores();
        Clients(first.viewContext()).setValue(Contact::Name, u"Zoë 🌳"_s);
        Clients untouched(first.viewContext());
        Clients emptied(first.viewContext());
        emptied.setValue(Contact::PhoneNo, QString());
        TeamMembers(first.viewContext()).setValue(Contact::Name, u"Zoë 🌳"_s);
        QCOMPARE(stored(home->path()), QString());
        QVERIFY(first.viewContext().save());
        QCOMPARE(stored(home->path()), u"Zoë 🌳=- -=- -= "_s);
        QCOMPARE(stored<TeamMembers>(home->path()), u"Zoë 🌳=- "_s);

        QCOMPARE(second.viewContext().fetch(Clients::fetchRequest()).size(), 3);
        first.viewContext().deleteObject(untouched);
        emptied.setValue(Contact::Name, u"Abe"_s);
        Clients dropped(first.viewContext());
        first.viewContext().deleteObject(dropped);
        QVERIFY(first.viewContext().save());
        QVERIFY(first.viewContext().save());
        QCOMPARE(stored(home->path()), u"Zoë 🌳=- Abe= "_s);
        QCOMPARE(second.viewContext().fetch(Clients::fetchRequest()).size(), 3);
        Clients(second.viewContext()).setValue(Contact::Name, u"Last"_s);
        QVERIFY(second.viewContext().save());
        QCOMPARE(stored(home->path()), u"Zoë 🌳=- Abe= Last=- "_s);
    }

    void aStoreThatCannotBeUsedIsLeftAlone()
    {
        for (const auto &[sql, reason] : {std::pair(u""_s, u"not a database"_s), // damaged
                                          {u"PRAGMA user_version = 2"_s, u"newer version"_s},
                                          {u"CREATE TABLE Other (id)"_s, u"no such table"_s}}) {
            init();
            const QString path = home->filePath(u"Model.sqlite"_s);
            if (sql.isEmpty())
                writeTo(path, QByteArray(5000, 'x'));
            else
                QVERIFY(RawStore(home->path()).run(sql));
            const QByteArray before = contentOf(path);
            CapturedOutput output;
            ViewControllerClientMgmt screen(home->path());
            const QStringList lines = output.takeLines();
            QCOMPARE(lines.size(), 2);
            QCOMPARE(lines[0], u"Unable to Add Persistent Store"_s);
            QVERIFY2(lines[1].contains(reason) && lines[1].contains(path), qPrintable(lines[1]));
            screen.show();
            screen.AddCient(nullptr);
            QCOMPARE(tableOf(screen).model()->rowCount(), 1);
            screen.okpressed(nullptr);
            QVERIFY(!screen.isVisible());
            QCOMPARE(contentOf(path), before);
        }
    }

    void aFailedSaveKeepsTheChanges()
    {
        CapturedOutput output;
        PersistentContainer container(contactModel(), home->path());
        container.loadPersistentStores();
        QCOMPARE(output.takeLines(),
                 {u"---Persistent Store---: "_s + home->filePath(u"Model.sqlite"_s) + u" SQLite"_s});
        Clients(container.viewContext()).setValue(Contact::Name, u"Anna"_s);
        {
            const RawStore other(home->path());
            QVERIFY(other.run(u"BEGIN EXCLUSIVE"_s));
            QVERIFY(!container.viewContext().save());
            QCOMPARE(stored(home->path()), QString()); // nor can it be opened
            QCOMPARE(output.takeLines().value(0), u"Unable to Add Persistent Store"_s);
        }
        QVERIFY(container.viewContext().save());
        QCOMPARE(stored(home->path()), u"Anna=- "_s);
    }

    void whatIsBeingTypedIsSavedHoweverTheScreenCloses()
    {
        for (const bool quits : {false, true}) {
            init();
            CapturedOutput output;
            ViewControllerClientMgmt screen(home->path());
            const QAbstractItemModelTester tester(tableOf(screen).model());
            show(screen);
            click(screen, u"addButton"_s);
            QTest::keyClicks(QApplication::focusWidget(), u"Anna"_s);
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QTest::keyClicks(QApplication::focusWidget(), u" 0049 (30) x"_s);
            QVERIFY(output.takeLines().contains(u"Name Change"_s));
            if (quits) {
                QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
                QCoreApplication::exec();
            } else {
                screen.close();
            }
            QVERIFY(!screen.isVisible());
            QCOMPARE(stored(home->path()), u"Anna= 0049 (30) x "_s);
        }
    }

    void cellsLeftWithoutTypingStayAbsent()
    {
        ViewControllerTeamMgmt screen(home->path());
        show(screen);
        click(screen, u"addButton"_s);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QTest::keyClicks(QApplication::focusWidget(), u"7"_s);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backspace);
        click(screen, u"okButton"_s);
        QCOMPARE(stored<TeamMembers>(home->path()), u"-= "_s);
    }

    void selectedContactsAreRemoved()
    {
        ViewControllerTeamMgmt screen(home->path());
        show(screen);
        const QAbstractItemModelTester tester(tableOf(screen).model());
        for (const QChar name : u"abcd"_s) {
            click(screen, u"addButton"_s);
            QTest::keyClicks(QApplication::focusWidget(), name);
        }
        QTableView &table = tableOf(screen);
        click(screen, u"removeButton"_s); // the row that is being edited is the selected one
        QCOMPARE(table.model()->rowCount(), 3);
        table.clearSelection();
        click(screen, u"removeButton"_s);
        QCOMPARE(table.model()->rowCount(), 3);
        table.selectRow(0);
        table.selectionModel()->select(table.model()->index(2, 0),
                                       QItemSelectionModel::Select | QItemSelectionModel::Rows);
        table.setFocus();
        QTest::keyClick(&table, Qt::Key_Delete);
        click(screen, u"okButton"_s);
        QCOMPARE(stored<TeamMembers>(home->path()), u"b=- "_s);
    }

    void manyContactsAreRemovedAtOnce()
    {
        constexpr int count = 1000;
        PersistentContainer container(contactModel(), home->path());
        container.loadPersistentStores();
        ContactTable contacts;
        contacts.load<Clients>(container.viewContext());
        QList<int> odd;
        for (int row = 0; row < count; ++row) {
            contacts.setData(contacts.index(contacts.add(), Contact::Name), QString::number(row));
            if (row % 2 == 1)
                odd.append(row);
        }
        QTableView view;
        view.setModel(&contacts);
        contacts.remove(odd);
        QCOMPARE(contacts.rowCount(), count / 2);
        for (int row = 0; row < count / 2; ++row)
            QCOMPARE(contacts.contact(row).name(), QString::number(2 * row));
        QVERIFY(container.viewContext().save());
        QVERIFY(stored(home->path()).startsWith(u"0=- 2=- 4=- "_s));
    }

private:
    static QTableView &tableOf(const QWidget &screen) { return *screen.findChild<QTableView *>(); }

    static void show(QWidget &screen)
    {
        screen.show();
        screen.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&screen));
    }

    static void click(const QWidget &screen, const QString &button)
    {
        QTest::mouseClick(screen.findChild<QPushButton *>(button), Qt::LeftButton);
    }

    std::unique_ptr<QTemporaryDir> home;
};

static const TestClass<ContactsTest> registered;

#include "ContactsTest.moc"
