#include "contacts/ViewControllerClientMgmt.h"
#include "support/Dialogs.h"
#include "support/TestProgram.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTableView>

using namespace Qt::StringLiterals;

namespace {

/// Such as `Anna=123 `; an absent text is shown as a hyphen.
QString textOf(const Contact &contact)
{
    return contact.name().value_or(u"-"_s) + u'=' + contact.phoneNo().value_or(u"-"_s) + u' ';
}

/// What the context sees.
QString seen(ObjectContext &context)
{
    QString texts;
    for (const ManagedObject &object : context.fetch(Clients::fetchRequest()))
        texts += textOf(Contact(object));
    return texts;
}

struct Store : PersistentContainer
{
    explicit Store(const QString &folder)
        : PersistentContainer(contactModel(), folder)
    {
        loadPersistentStores();
    }

    /// Runs the statement on the store, past the program.
    bool run(const QString &sql)
    {
        return QSqlQuery(QSqlDatabase::database(viewContext().connectionName())).exec(sql);
    }
};

/// What a context opened now sees.
QString stored(const QString &folder)
{
    return seen(Store(folder).viewContext());
}

} // namespace

class ContactsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { home.emplace(); }

    void contextsSeeTheStoreAsItWasFetched()
    {
        Store first(home->path());
        Store second(home->path());
        QVERIFY(first.viewContext().fetch(Clients::fetchRequest()).empty());
        Clients(first.viewContext()).setValue(Contact::Name, u"Zoë 🌳"_s);
        Clients untouched(first.viewContext());
        Clients emptied(first.viewContext());
        emptied.setValue(Contact::PhoneNo, QString());
        TeamMembers(first.viewContext()).setValue(Contact::Name, u"Zoë 🌳"_s);
        QCOMPARE(stored(home->path()), QString());
        QVERIFY(first.viewContext().save());
        QCOMPARE(stored(home->path()), u"Zoë 🌳=- -=- -= "_s);

        std::vector<ManagedObject> before = second.viewContext().fetch(Clients::fetchRequest());
        QCOMPARE(before.size(), 3);
        first.viewContext().deleteObject(untouched);
        emptied.setValue(Contact::Name, u"Abe"_s);
        Clients dropped(first.viewContext());
        first.viewContext().deleteObject(dropped);
        QVERIFY(first.viewContext().save() && first.viewContext().save());
        QCOMPARE(stored(home->path()), u"Zoë 🌳=- Abe= "_s);
        QCOMPARE(second.viewContext().fetch(Clients::fetchRequest()).size(), 3);
        Clients(second.viewContext()).setValue(Contact::Name, u"Last"_s);
        QVERIFY(second.viewContext().save());
        QCOMPARE(stored(home->path()), u"Zoë 🌳=- Abe= Last=- "_s);

        using enum ObjectContext::Refresh;
        before[0].setValue(Contact::PhoneNo, u"1"_s);
        before[1].setValue(Contact::Name, u"Kept"_s);
        QVERIFY(first.run(u"BEGIN EXCLUSIVE"_s));
        QCOMPARE(second.viewContext().refresh(), Failed);
        QVERIFY(first.run(u"COMMIT"_s));
        QCOMPARE(second.viewContext().refresh(), Changed);
        QCOMPARE(second.viewContext().refresh(), Unchanged);
        QCOMPARE(seen(second.viewContext()), u"Zoë 🌳=1 Kept=- Abe= Last=- "_s);
        QVERIFY(second.viewContext().fetch(Clients::fetchRequest())[2] == before[2]);
        QVERIFY(second.viewContext().save());
        second.viewContext().deleteObject(before[2]);
        QVERIFY(second.viewContext().save());
        QCOMPARE(first.viewContext().refresh(), Changed);
        QCOMPARE(seen(first.viewContext()), u"Zoë 🌳=1 Last=- Kept=- "_s);
        QVERIFY(emptied.isDeleted() && first.viewContext().save());
        QCOMPARE(stored(home->path()), u"Zoë 🌳=1 Last=- Kept=- "_s);
    }

    void aStoreThatCanBeReadLaterIsShown()
    {
        Store other(home->path());
        Clients(other.viewContext()).setValue(Contact::Name, u"Anna"_s);
        QVERIFY(other.viewContext().save() && other.run(u"BEGIN EXCLUSIVE"_s));
        ViewControllerClientMgmt screen({home->path()});
        screen.show();
        screen.AddCient(nullptr);
        {
            const AlertAnswer alert(u"Cancel"_s);
            screen.okpressed(nullptr);
        }
        QVERIFY(other.run(u"ROLLBACK"_s));
        choose(screen, u"Try Again"_s);
        QCOMPARE(tableOf(screen).model()->rowCount(), 2);
        QCOMPARE(toldIn(screen), QString());
        QCOMPARE(stored(home->path()), u"Anna=- -=- "_s);
    }

    void aStoreThatCannotBeUsedIsLeftAlone()
    {
        for (const auto &[harm, reason] : {std::pair(u""_s, u"not a database"_s), // damaged
                                           {u"PRAGMA user_version = 2"_s, u"newer version"_s},
                                           {u"PRAGMA user_version = 0"_s, u"no such table"_s}}) {
            init();
            const QString path = home->filePath(u"Model.sqlite"_s);
            if (harm.isEmpty()) {
                writeTo(path, QByteArray(5000, 'x'));
            } else {
                Store store(home->path());
                QVERIFY(store.run(u"DROP TABLE Clients"_s) && store.run(harm));
            }
            const QByteArray before = contentOf(path);
            ViewControllerClientMgmt screen({home->path()});
            screen.show();
            QVERIFY(toldIn(screen).startsWith(u"The contacts in "_s + path));
            screen.AddCient(nullptr);
            QCOMPARE(tableOf(screen).model()->rowCount(), 1);
            for (const QString &answer : {u"Cancel"_s, u"Close Without Saving"_s}) {
                const AlertAnswer alert(answer);
                screen.okpressed(nullptr);
                QVERIFY(alert.wasShown());
                QCOMPARE(screen.isVisible(), answer == u"Cancel");
            }
            QCOMPARE(contentOf(path), before);
            QFile::remove(path);
            screen.show();
            QVERIFY2(toldIn(screen).count(reason) == 2, qPrintable(toldIn(screen)));
            screen.okpressed(nullptr); // makes a new store
            QCOMPARE(stored(home->path()), u"-=- "_s);
        }
    }

    void contactsAreAddedAndRemovedUntilTheProgramEnds()
    {
        ViewControllerClientMgmt screen({home->path()});
        const auto click = [&](const QString &button) {
            QTest::mouseClick(screen.findChild<QPushButton *>(button), Qt::LeftButton);
        };
        const auto type = [](const QByteArray &keys) {
            for (const char key : keys)
                QTest::keyClick(QApplication::focusWidget(), key); // a tab goes on to the next cell
        };
        screen.show();
        screen.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&screen));
        QTableView &table = tableOf(screen);
        const QAbstractItemModelTester tester(table.model());
        for (const char *name : {"a", "b", "c", "d"}) {
            click(u"addButton"_s);
            type(name);
        }
        click(u"removeButton"_s); // the row that is being edited is the selected one
        QCOMPARE(table.model()->rowCount(), 3);
        table.selectRow(0);
        table.selectionModel()->select(table.model()->index(2, 0),
                                       QItemSelectionModel::Select | QItemSelectionModel::Rows);
        table.setFocus();
        QTest::keyClick(&table, Qt::Key_Delete);
        QTest::keyClick(&table, Qt::Key_Delete); // with none selected
        QCOMPARE(toldIn(screen), u"Removed 2 contacts"_s);
        choose(screen, u"Undo"_s);
        QCOMPARE(toldIn(screen) + QString::number(table.model()->rowCount()), u"3"_s);
        QTest::keyClick(&screen, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(toldIn(screen), u"Removed 2 contacts"_s);
        table.setCurrentIndex(table.model()->index(0, 1));
        table.edit(table.currentIndex());
        type("5");
        choose(screen, u"Undo"_s); // of the removal, and not of what is being typed
        QCOMPARE(toldIn(screen) + QString::number(table.model()->rowCount()), u"3"_s);
        QCOMPARE(table.model()->index(1, 1).data().toString(), u"5"_s);
        QTest::keyClick(&screen, Qt::Key_Z, Qt::ControlModifier); // they go again
        QCOMPARE(toldIn(screen) + QString::number(table.model()->rowCount()), u"Removed 2 contacts1"_s);
        choose(screen, u"Undo"_s);
        for (int step = 0; step < 2; ++step)
            QTest::keyClick(&screen, Qt::Key_Z, Qt::ControlModifier);
        click(u"addButton"_s);
        type("\t7\b"); // a cell left without typing stays absent
        click(u"addButton"_s);
        type("Anna\t 0049 (30) x"); // and is still being typed
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Z, Qt::ControlModifier);
        type(" 0049 (30) x"); // instead, since the field takes its own text back
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
        QCoreApplication::exec();
        QVERIFY(!screen.isVisible());
        QCOMPARE(stored(home->path()), u"b=- -= Anna= 0049 (30) x "_s);
        ViewControllerClientMgmt inactive({home->path()}); // whose cells are not told that the focus goes
        inactive.show();
        inactive.AddCient(nullptr);
        QTest::keyClicks(inactive.focusWidget(), u"Last"_s);
        inactive.close();
        QVERIFY(stored(home->path()).endsWith(u"Last=- "_s));
    }

    /// The library is loaded no sooner than there is something to be seen.
    void whatIsRemarkableIsMarked()
    {
        QCoreApplication::addLibraryPath(u"" BINARY_DIR "/bin/" MODULE_PATH ""_s);
        Store store(home->path());
        for (const auto &[name, phoneNo] : {std::pair(u"Anna"_s, u"+49 151 5550142"_s),
                                            {u"Bert"_s, u"0151/5550142"_s},
                                            {u"ANNA"_s, u"+1 212 555 0142"_s},
                                            {u""_s, u""_s}}) {
            Clients client(store.viewContext());
            client.setValue(Contact::Name, name);
            client.setValue(Contact::PhoneNo, phoneNo);
        }
        QVERIFY(store.save());
        const auto isLoaded = [] {
            return contentOf(u"/proc/self/maps"_s).contains("quorvanephone");
        };
        ViewControllerClientMgmt screen({home->path(), u"+49 151 1234567"_s});
        QCOMPARE(contactNames(Store(home->path()).viewContext(), Clients::fetchRequest()).size(), 4);
        QVERIFY(!isLoaded());
        screen.show();
        QTableView &table = tableOf(screen);
        QTRY_VERIFY(isLoaded());
        const auto marks = [&table](int role) {
            QStringList found;
            for (int row = 0; row < table.model()->rowCount(); ++row)
                for (const int column : {Contact::Name, Contact::PhoneNo})
                    found.append(table.model()->index(row, column).data(role).toString());
            return found;
        };
        const QString twice = u"Another contact has this name, too; each is sent all tasks of that name."_s;
        const QString missing = u"The country code is missing (assumed: Germany). "_s;
        const QString none = u"There is no number to which texts could be sent."_s;
        const auto as = [](const QString &name) {
            return u"The same number as that of %1."_s.arg(name);
        };
        const QStringList before{twice, as(u"Bert"_s), {}, missing + as(u"Anna"_s), twice, {}, {}, none};
        QCOMPARE(marks(Qt::ToolTipRole), before);
        QCOMPARE(marks(Qt::AccessibleTextRole)[3], u"0151/5550142 – "_s + before[3]);
        QCOMPARE(marks(Qt::DisplayRole)[7], u"no number"_s);

        table.setCurrentIndex(table.model()->index(1, 0));
        const auto &remark = *screen.findChild<QLabel *>(u"contactRemark"_s);
        QTRY_COMPARE(remark.text(), before[3]);
        choose(screen, u"Correct to +49 1515550142"_s);
        QCOMPARE(marks(Qt::EditRole)[3], u"+49 1515550142"_s);
        QTRY_COMPARE(remark.text(), as(u"Anna"_s));
        QVERIFY(screen.findChild<QPushButton *>(u"correctButton"_s)->isHidden());
        table.model()->setData(table.model()->index(2, Contact::Name), u"Carl"_s);
        QCOMPARE(marks(Qt::ToolTipRole)[0], QString());
        for (int step = 0; step < 2; ++step)
            QTest::keyClick(&screen, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(marks(Qt::ToolTipRole), before);
        table.selectionModel()->select(table.model()->index(1, 0),
                                       QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        screen.RemoveClient(nullptr);
        QCOMPARE(marks(Qt::ToolTipRole), QStringList({twice, {}, twice, {}, {}, none}));
    }

    /// Also when it was saved in between, and seen by another context.
    void whateverIsDoneCanBeTakenBack()
    {
        Store store(home->path());
        ContactTable contacts;
        contacts.load<Clients>(store.viewContext());
        for (int number = 0; number < 300; ++number)
            contacts.setData(contacts.index(contacts.add(), Contact::Name), QString::number(number));
        QVERIFY(store.save());
        contacts.reload();
        QUndoStack &steps = contacts.steps();
        QTableView view;
        view.setModel(&contacts);
        Store other(home->path());
        QStringList states{seen(other.viewContext())}; // by the number of steps
        QRandomGenerator random(7);
        const auto randomRows = [&](int rowCount) {
            QList<int> rows{random.bounded(rowCount)};
            for (int row = 0; row < rowCount; ++row)
                if (row != rows.first() && random.bounded(2) == 0)
                    rows.append(row);
            return rows;
        };
        for (int turn = 0; turn < 500; ++turn) {
            const int rows = contacts.rowCount();
            const int act = random.bounded(rows > 0 ? 0 : 2, 7);
            if (act == 0)
                contacts.remove(randomRows(rows));
            else if (act == 1)
                contacts.setData(contacts.index(random.bounded(rows), random.bounded(2)), turn);
            else if (act == 2)
                contacts.add();
            else if (act <= 4)
                steps.undo();
            else if (act == 5)
                steps.redo();
            else
                QVERIFY(store.save() && stored(home->path()) == states[steps.index()]);
            other.viewContext().refresh();
            if (act <= 2)
                states = states.first(steps.index()) << seen(store.viewContext());
            QCOMPARE(seen(store.viewContext()), states[steps.index()]);
            QString shown;
            for (int row = 0; row < contacts.rowCount(); ++row)
                shown += textOf(contacts.contact(row));
            QCOMPARE(shown, states[steps.index()]);
            QCOMPARE(view.verticalHeader()->count(), contacts.rowCount());
        }
        steps.setIndex(0);
        QVERIFY(store.save());
        other.viewContext().refresh();
        QCOMPARE(seen(other.viewContext()), states[0]);
    }

private:
    static QTableView &tableOf(const QWidget &screen) { return *screen.findChild<QTableView *>(); }

    std::optional<QTemporaryDir> home;
};

static const TestClass<ContactsTest> registered;
#include "ContactsTest.moc"
