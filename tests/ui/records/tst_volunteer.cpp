#include "FormTesting.h"
#include "frmVolunteer.h"

class tst_Volunteer : public QObject
{
    Q_OBJECT

private:
    static qint64 addVolunteer(const QString &last, const QString &first)
    {
        return TestDatabase::insert("Volunteer", {{"LastName", last}, {"FirstName", first}});
    }

    static frmVolunteer *openVolunteers(EditorDesk &desk)
    {
        menu(desk.main, "mnuDataVolunteers")->trigger();
        return desk.main.findChildWindow<frmVolunteer>();
    }

private slots:
    void opensOnNewVolunteerMovesAndFilters()
    {
        EditorDesk desk;
        const qint64 zed = addVolunteer("Zimmer", "Ann");
        const qint64 abe = addVolunteer("Abbott", "Bo");
        auto *w = openVolunteers(desk);
        QVERIFY(w);
        QCOMPARE(w->windowTitle(), QStringLiteral("Volunteers"));
        QCOMPARE(w->kind(), MdiChild::Kind::Volunteer);
        QVERIFY(!w->findChild<QLineEdit *>(QStringLiteral("txtClientName")));
        // Opened without a volunteer: a new one, ready to type.
        QVERIFY(w->VolunteerID().isEmpty());
        QVERIFY(lineEdit(w, "LastName")->text().isEmpty());
        QVERIFY(!desk.main.toolbarButton(QStringLiteral("Delete"))->isEnabled());
        button(w, "cmdFirst")->click();
        QCOMPARE(w->VolunteerID(), QString::number(abe));
        QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 2     ID: %1").arg(abe));
        QVERIFY(desk.main.toolbarButton(QStringLiteral("Delete"))->isEnabled());
        QCOMPARE(TestDatabase::count("Volunteer"), 2);

        // The search bar's choice.
        desk.main.showVolunteer(QString::number(zed));
        QCOMPARE(desk.main.findChildWindow<frmVolunteer>(), w);
        QCOMPARE(lineEdit(w, "LastName")->text(), QStringLiteral("Zimmer"));
        QCOMPARE(w->currentKey(), QString::number(zed));

        // A filter that matches nobody says so and leaves a blank form; clearing it brings the volunteers back.
        QVERIFY(w->hasSQL());
        w->setSQL(QStringLiteral("SELECT * FROM Volunteer WHERE LastName = 'Nobody' ORDER BY LastName"));
        w->ExecuteSQL();
        QCOMPARE(w->windowTitle(), QStringLiteral("Volunteers (Filter Applied)"));
        QCOMPARE(desk.prompts.messages(),
                 (QList<Prompt::Message> {{"No Volunteer Records Found", "No records were found that matched the specified criteria.",
                                           Prompt::Icon::Exclamation, Prompt::Ok}}));
        QVERIFY(lineEdit(w, "LastName")->text().isEmpty());
        QVERIFY(!w->DataChanged());
        w->setSQL({});
        w->ExecuteSQL();
        QCOMPARE(w->windowTitle(), QStringLiteral("Volunteers"));
        QCOMPARE(lineEdit(w, "LastName")->text(), QStringLiteral("Abbott"));
        QCOMPARE(desk.prompts.messages().size(), 1);
    }

    void newVolunteerWithZipCode()
    {
        EditorDesk desk;
        TestDatabase::insert("ZipCode", {{"ZipCode", "97201"}, {"City", "Portland"}, {"State", "OR"}});
        auto *w = openVolunteers(desk);
        QVERIFY(w->VolunteerID().isEmpty());   // none yet: a blank new volunteer
        typeInto(lineEdit(w, "LastName"), "O'Neil");
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(desk.prompts.last().title, QStringLiteral("Required Field Empty"));
        QCOMPARE(desk.prompts.last().text, QStringLiteral("First Name is required."));
        typeInto(lineEdit(w, "FirstName"), "Pat");
        QComboBox *zip = combo(w, "ZipCode");
        zip->setFocus();
        QTest::keyClicks(zip, QStringLiteral("97201"));
        QCOMPARE(lineEdit(w, "City")->text(), QStringLiteral("Portland"));
        QCOMPARE(combo(w, "State")->currentText(), QStringLiteral("OR"));
        typeInto(lineEdit(w, "HomePhone"), "5035551212");
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(
            TestDatabase::scalar("SELECT City || State || ZipCode || HomePhone FROM Volunteer WHERE LastName = ?", {"O'Neil"}).toString(),
            QStringLiteral("PortlandOR972015035551212"));

        desk.prompts.answer(Prompt::Yes);
        w->DeleteCurrentRecord();
        QCOMPARE(desk.prompts.messages().at(desk.prompts.messages().size() - 2).text,
                 QStringLiteral("Are you sure you want to delete volunteer 'O'Neil, Pat'?"));
        QCOMPARE(desk.prompts.last().title, QStringLiteral("Delete Volunteer"));
        QCOMPARE(TestDatabase::count("Volunteer"), 0);
    }
};

QTEST_MAIN(tst_Volunteer)
#include "tst_volunteer.moc"
