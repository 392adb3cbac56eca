#include "frmPaymentHistory.h"

#include "AmountBox.h"
#include "DataBinding.h"
#include "Money.h"
#include "RecordQueries.h"

#include <QComboBox>
#include <QDateEdit>
#include <QGridLayout>
#include <QLineEdit>
#include <QPlainTextEdit>

frmPaymentHistory::frmPaymentHistory(Workspace *main, QWidget *parent) : RecordEditor(main, parent)
{
    setObjectName(QStringLiteral("frmPaymentHistory"));
    setWindowTitle(tr("Payment History"));
}

QString frmPaymentHistory::query() const
{
    return RecordQueries::payments();
}

void frmPaymentHistory::buildFields()
{
    const QString required = QStringLiteral("R,Ex_Left,Ex_Top,Ex_Height,Ex_Font");
    auto *date = new QDateEdit;
    date->setDisplayFormat(QStringLiteral("MM/dd/yyyy"));
    date->setCalendarPopup(true);
    date->setMaximumWidth(130);
    addField(date, "dtpData", QStringLiteral("PaymentDate"), required, 0, tr("Payment Date"), 0);
    addField(new QComboBox, "cboData", QStringLiteral("PaymentsTypeID"), required, 1, tr("Payment Type"), 1);
    auto amount = [this](const QString &column, const QString &tag, int index, const QString &caption) {
        auto *box = new AmountBox;
        box->setMaximumWidth(130);
        addField(box, "txtData", column, tag, index, caption, index);
    };
    amount(QStringLiteral("AmountRequested"), QStringLiteral("Ex_Left,Ex_Top,Ex_Height,Ex_Font"), 2, tr("Amount Requested"));
    amount(QStringLiteral("AmountPaid"), required, 3, tr("Amount Paid"));
    addField(new QPlainTextEdit, "txtData", QStringLiteral("Comments"), QStringLiteral("Ex_All"), 4, tr("Comments"), 4);
    fieldGrid()->setColumnStretch(1, 1);
}

bool frmPaymentHistory::checkField(QWidget *control, const QString &column, const QString &value, const QString &caption)
{
    if ((column == QLatin1String("AmountRequested") || column == QLatin1String("AmountPaid")) && !value.isEmpty()) {
        const auto cents = Money::parse(value);
        if (cents && Money::wholeUnitsHalfEven(*cents) == 0)
            return refuse(control, tr("Data Entry Error"), tr("%1 cannot be zero.").arg(caption));
    }
    return RecordEditor::checkField(control, column, value, caption);
}

RecordEditor::DeleteTexts frmPaymentHistory::deleteTexts() const
{
    const auto *type = qobject_cast<const QComboBox *>(boundControl(QStringLiteral("PaymentsTypeID")));
    const QString description = basTendmark::GetFieldValue(madoPrimaryRS, QStringLiteral("PaymentDate")) + QLatin1Char(' ')
        + (type ? type->currentText() : QString());
    return {tr("Are you sure you want to delete payment item '%1'?").arg(description), tr("Delete Payment Item?"),
            tr("Payment item '%1' deleted.").arg(description), tr("Delete Payment Item")};
}
