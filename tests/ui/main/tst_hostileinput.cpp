#include "FormTesting.h"
#include "frmClientDetails.h"
#include "frmOptions.h"
#include "frmVolunteer.h"

#include <QApplication>
#include <QClipboard>

// Values a hurried volunteer pastes from a spreadsheet, or an attacker types,
// put into the boxes of every kind of record window: each is either refused
// with the field's message, nothing of it stored, or stored exactly as the
// user saw it accepted. What landed is read back with SQL's quote().
class tst_HostileInput : public QObject
{
    Q_OBJECT

    enum class Window { Client, FamilyMember, FoodService, Payment, Income, Volunteer, Options };
    enum class Way { Type, Paste };

    struct Opened
    {
        QWidget *window = nullptr;
        QString table;
        std::function<bool()> save;
    };
    static Opened record(MdiChild *w, const char *table)
    {
        return {w, QLatin1String(table), [w] { return w->SaveCurrentRecord(); }};
    }

    static Opened open(EditorDesk &desk, Window which)
    {
        // Each record window with its required fields filled, the value under test still to come.
        const auto editor = [&desk](RecordKind kind, const char *table, const char *required) {
            auto *w = desk.open<RecordEditor>(kind);
            typeFields(w, QLatin1String(required));
            return record(w, table);
        };
        switch (which) {
        case Window::Client:
            desk.main.showClient(QString::number(desk.clientId));
            return record(desk.main.findChildWindow<frmClientDetails>(), "Client");
        case Window::FamilyMember:
            return editor(RecordKind::FamilyMember, "Family", "RelationshipID=Other;LastName=Ray;FirstName=Al");
        case Window::FoodService: {
            const Opened opened = editor(RecordKind::FoodService, "FoodService", "NumberOfBags=2");
            combo(qobject_cast<RecordEditor *>(opened.window), "FoodServiceTypeID")->setCurrentIndex(0);
            return opened;
        }
        case Window::Payment:
            return editor(RecordKind::Payment, "Payments", "PaymentsTypeID=Utilities;AmountPaid=5");
        case Window::Income:
            return editor(RecordKind::Income, "Income", "IncomeSourceID=Pension;Amount=5");
        case Window::Volunteer:
            menu(desk.main, "mnuDataVolunteers")->trigger();
            typeFields(desk.main.findChildWindow<frmVolunteer>(), "LastName=Ray;FirstName=Al");
            return record(desk.main.findChildWindow<frmVolunteer>(), "Volunteer");
        case Window::Options: {
            menu(desk.main, "mnuToolsOptions")->trigger();
            auto *dialog = desk.main.findChild<frmOptions *>();
            QApplication::setActiveWindow(dialog);
            return {dialog, QStringLiteral("Organization"), [dialog] {
                        button(dialog, "cmdApply")->click();
                        return !button(dialog, "cmdApply")->isEnabled();
                    }};
        }
        }
        return {};
    }

    static void paste(QWidget *c, const QString &text)
    {
        if (auto *list = qobject_cast<QComboBox *>(c))
            c = list->lineEdit();
        c->setFocus();
        if (auto *edit = qobject_cast<QLineEdit *>(c))
            edit->selectAll();
        else if (auto *plain = qobject_cast<QPlainTextEdit *>(c))
            plain->selectAll();
        QApplication::clipboard()->setText(text);
        QTest::keyClick(c, Qt::Key_V, Qt::ControlModifier);
    }

private slots:
    void valueIsRefusedOrStoredExactly_data()
    {
        QTest::addColumn<Window>("window");
        QTest::addColumn<QString>("field");
        QTest::addColumn<Way>("way");
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("refusal");   // the message, or empty when the value is taken
        QTest::addColumn<QString>("stored");   // quote() of the column afterwards

        const QString clientName = QStringLiteral("'O''Brien'");
        const QString emoji = QString::fromUtf8("\xF0\x9F\x98\x80");
        auto row
            = [](const char *name, Window w, const char *field, Way way, const QString &input, const char *refusal, const QString &stored) {
                  QTest::newRow(name) << w << QString::fromLatin1(field) << way << input << QString::fromUtf8(refusal) << stored;
              };
        using W = Window;
        const Way P = Way::Paste, T = Way::Type;
        // The field checks themselves are tested in core; here each kind of box, window and way in.
        row("quotes and SQL", W::Client, "LastName", P, "'); DROP TABLE Client; --", "", "'''); DROP TABLE Client; --'");
        row("10,000 characters", W::Client, "LastName", P, QString(10000, u'x'), "Last Name cannot exceed 50 characters.", clientName);
        row("10,000 typed", W::Volunteer, "LastName", T, QString(60, u'x'), "Last Name cannot exceed 50 characters.", "none");
        row("emoji at the limit", W::Client, "LastName", P, QString(49, u'x') + emoji, "", "'" + QString(49, u'x') + emoji + "'");
        row("emoji past the limit", W::Client, "LastName", P, QString(50, u'x') + emoji, "Last Name cannot exceed 50 characters.",
            clientName);
        row("Vietnamese", W::FamilyMember, "LastName", P, QString::fromUtf8("Nguyễn"), "", QString::fromUtf8("'Nguyễn'"));
        row("control characters and blanks", W::Client, "FirstName", P, QStringLiteral("  Ann\tMarie") + QChar(7) + QChar(0) + QChar(u'\n'),
            "", "'Ann Marie'");
        row("memo keeps its lines", W::Client, "Comments", P, QStringLiteral("one\r\ntwo") + QChar(7), "", "'one\ntwo'");
        row("SSN of 10 digits", W::Client, "SocialSecurityNumber", P, "1234567890",
            "Social Security No takes 9 digits; the pasted text has 10.", "'123456789'");
        row("SSN with dashes", W::Client, "SocialSecurityNumber", P, "987-65-4321", "", "'987654321'");
        row("phone of 11 digits", W::Client, "HomePhone", P, "1 217 555 1234", "Home Phone takes 10 digits; the pasted text has 11.",
            "NULL");
        row("phone with letters", W::Client, "WorkPhone", P, "217-555-1234 x9", "Work Phone takes digits only.", "NULL");
        row("far future", W::Client, "BirthDate", P, "12/31/9999", "Birth Date cannot be in the future.", "NULL");
        row("negative years", W::Client, "EmployerDurationYears", P, "-5", "yrs takes digits only.", "NULL");
        row("negative bags", W::FoodService, "NumberOfBags", P, "-1", "Number of bags takes digits only.", "2");
        row("negative paid", W::Payment, "AmountPaid", P, "-50", "Amount Paid cannot be negative.", "500");
        row("grouped amount", W::Payment, "AmountPaid", P, "1,234.50", "", "123450");
        row("huge typed amount", W::Income, "Amount", T, QString(20, u'9'), "Amount cannot be more than $9,999,999,999,999.99.", "none");
        row("seven-digit phone", W::Options, "OrganizationPhone", P, "555 1234", "", "'5551234'");
    }

    void valueIsRefusedOrStoredExactly()
    {
        QFETCH(Window, window);
        QFETCH(QString, field);
        QFETCH(Way, way);
        QFETCH(QString, input);
        QFETCH(QString, refusal);
        QFETCH(QString, stored);

        EditorDesk desk;
        const Opened w = open(desk, window);
        QVERIFY(w.window);
        desk.prompts.clear();
        QWidget *box = fieldOf(w.window, field);
        if (way == Way::Type)
            typeInto(box, input);
        else
            paste(box, input);
        const bool saved = w.save();

        const QString where = window == Window::Client ? QStringLiteral(" WHERE ClientID = %1").arg(desk.clientId) : QString();
        const QVariant after = TestDatabase::scalar(QStringLiteral("SELECT quote(%1) FROM %2%3").arg(field, w.table, where));
        QCOMPARE(after.isValid() ? after.toString() : QStringLiteral("none"), stored);
        if (refusal.isEmpty()) {
            QVERIFY(saved);
            QCOMPARE(desk.prompts.messages(), QList<Prompt::Message> {});
        } else {
            const Prompt::Message told {"Data Entry Error", refusal, Prompt::Icon::Exclamation};
            QVERIFY2(desk.prompts.messages().contains(told), qPrintable(desk.prompts.messages().value(0).text));
        }
        QCOMPARE(TestDatabase::count("Client"), 1);
    }
};

QTEST_MAIN(tst_HostileInput)
#include "tst_hostileinput.moc"
