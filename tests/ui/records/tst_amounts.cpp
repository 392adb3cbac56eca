#include "FormTesting.h"
#include "frmIncomeExpense.h"
#include "frmPaymentHistory.h"

// The editors of money: payments, income and expenses.
class tst_Amounts : public QObject
{
    Q_OBJECT

private slots:
    void paymentRefusesZeroSavesCentsAndDeletes()
    {
        EditorDesk desk;
        auto *w = desk.open<frmPaymentHistory>(RecordKind::Payment);
        QVERIFY(w);
        QCOMPARE(w->windowTitle(), QStringLiteral("Payment History"));
        QCOMPARE(dateEdit(w, "PaymentDate")->date(), QDate::currentDate());
        choose(combo(w, "PaymentsTypeID"), "Utilities");
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(desk.prompts.last(),
                 (Prompt::Message {"Required Field Empty", "Amount Paid is required.", Prompt::Icon::Exclamation, Prompt::Ok}));
        // Amounts are rounded half to even before the zero check.
        const char *const refused[][3] = {{"", "0.40", "Amount Paid cannot be zero."},
                                          {"", "0.50", "Amount Paid cannot be zero."},
                                          {"0.2", "0.60", "Amount Requested cannot be zero."}};
        for (const auto &r : refused) {
            typeInto(lineEdit(w, "AmountRequested"), r[0]);
            typeInto(lineEdit(w, "AmountPaid"), r[1]);
            QVERIFY(!w->SaveCurrentRecord());
            QCOMPARE(desk.prompts.last(), (Prompt::Message {"Data Entry Error", r[2], Prompt::Icon::Exclamation, Prompt::Ok}));
        }
        QCOMPARE(TestDatabase::count("Payments"), 0);
        typeInto(lineEdit(w, "AmountRequested"), "1.50");
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::scalar("SELECT AmountRequested || '|' || AmountPaid FROM Payments").toString(), QStringLiteral("150|60"));

        QLineEdit *paid = lineEdit(w, "AmountPaid");
        typeInto(paid, "1234.5");
        lineEdit(w, "AmountRequested")->setFocus();   // leaving formats the amount
        QCOMPARE(paid->text(), QStringLiteral("$1,234.50"));
        paid->setFocus();   // entering shows it bare
        QCOMPARE(paid->text(), QStringLiteral("1,234.50"));
        lineEdit(w, "AmountRequested")->clear();
        QVERIFY(w->SaveCurrentRecord());   // an empty Amount Requested is fine
        QCOMPARE(TestDatabase::scalar("SELECT ClientID || '|' || PaymentDate || '|' || PaymentsTypeID || '|' || AmountPaid || '|'"
                                      " || ifnull(AmountRequested, 'null') FROM Payments")
                     .toString(),
                 QStringLiteral("%1|%2|%3|123450|null")
                     .arg(desk.clientId)
                     .arg(QDate::currentDate().toString(Qt::ISODate))
                     .arg(TestDatabase::lookupId("PaymentTypes", "Utilities")));
        QCOMPARE(desk.prompts.messages().size(), 4);

        const QString item = QDate::currentDate().toString(QStringLiteral("MM/dd/yyyy")) + QStringLiteral(" Utilities");
        desk.prompts.answer(Prompt::Yes);
        w->DeleteCurrentRecord();
        QCOMPARE(desk.prompts.messages().at(4).title, QStringLiteral("Delete Payment Item?"));
        QCOMPARE(desk.prompts.messages().at(4).text, QStringLiteral("Are you sure you want to delete payment item '%1'?").arg(item));
        QCOMPARE(desk.prompts.last().title, QStringLiteral("Delete Payment Item"));
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Payment item '%1' deleted.").arg(item));
        QCOMPARE(TestDatabase::count("Payments"), 0);
    }

    void incomeAndExpenses()
    {
        EditorDesk desk;
        auto *income = desk.open<frmIncomeExpense>(RecordKind::Income);
        QCOMPARE(income->windowTitle(), QStringLiteral("Add/Edit Income"));
        QCOMPARE(income->label(0)->text(), QStringLiteral("Income Source"));
        QCOMPARE(income->label(1)->text(), QStringLiteral("Amount"));
        QVERIFY(income->label(0)->font().bold());
        QCOMPARE(combo(income, "IncomeSourceID")->findText(QStringLiteral("Utilities")), -1);
        choose(combo(income, "IncomeSourceID"), "Pension");
        QLineEdit *amount = lineEdit(income, "Amount");
        typeInto(amount, "0");
        QVERIFY(!income->SaveCurrentRecord());
        QCOMPARE(desk.prompts.last(),
                 (Prompt::Message {"Data Entry Error", "Amount cannot be zero.", Prompt::Icon::Exclamation, Prompt::Ok}));
        // The box takes digits and one point only; a point is refused while the text holds one, even a selected one.
        typeInto(amount, "a$-7,x ");
        QCOMPARE(amount->text(), QStringLiteral("7"));
        typeInto(amount, "8x12.2.5");
        QCOMPARE(amount->text(), QStringLiteral("812.25"));
        amount->selectAll();
        QTest::keyClicks(amount, QStringLiteral(".5"));
        QCOMPARE(amount->text(), QStringLiteral("5"));
        typeInto(amount, "812.25");
        QVERIFY(income->SaveCurrentRecord());
        QCOMPARE(TestDatabase::scalar("SELECT Amount FROM Income WHERE ClientID = ?", {desk.clientId}).toLongLong(), 81225);

        auto *expenses = desk.open<frmIncomeExpense>(RecordKind::Expenses);
        QVERIFY(expenses != income);
        QCOMPARE(expenses->windowTitle(), QStringLiteral("Add/Edit Expenses"));
        QCOMPARE(expenses->label(0)->text(), QStringLiteral("Expense Category"));
        QVERIFY(expenses->IncomeExpenseItemID().isEmpty());
        choose(combo(expenses, "ExpenseCategoryID"), "Utilities");
        QVERIFY(!expenses->SaveCurrentRecord());
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Amount is required."));
        typeInto(lineEdit(expenses, "Amount"), "95");
        QVERIFY(expenses->SaveCurrentRecord());
        QCOMPARE(TestDatabase::count("Expenses"), 1);
        QCOMPARE(TestDatabase::count("Income"), 1);

        desk.prompts.clear();
        desk.prompts.answer(Prompt::Yes);
        expenses->DeleteCurrentRecord();
        QCOMPARE(desk.prompts.titles(), (QStringList {"Delete Expenses Item?", "Delete Expenses Item"}));
        QCOMPARE(desk.prompts.messages().at(0).text, QStringLiteral("Are you sure you want to delete 'Utilities'?"));
        QCOMPARE(desk.prompts.last().text, QStringLiteral("'Utilities' deleted."));
        QCOMPARE(TestDatabase::count("Expenses"), 0);

        // Opening income again for the same client brings the open window forward on the record.
        const QString incomeId = TestDatabase::scalar("SELECT IncomeItemID FROM Income").toString();
        QCOMPARE(desk.open<frmIncomeExpense>(RecordKind::Income, incomeId), income);
        QCOMPARE(income->IncomeExpenseItemID(), incomeId);
        QCOMPARE(amount->text().remove(QLatin1Char('$')), QStringLiteral("812.25"));
    }
};

QTEST_MAIN(tst_Amounts)
#include "tst_amounts.moc"
