#include "frmSelect.h"

#include "DataBinding.h"
#include "GridModel.h"
#include "QueryPages.h"
#include "basErrorHandler.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTableView>
#include <QVBoxLayout>

namespace {

struct SpecEntry
{
    const char *field;
    const char *entry;
};
const SpecEntry kSpec[] = {
    {"LastName", QT_TRANSLATE_NOOP("ColumnHeadings", "<Last Name,1200")},
    {"FirstName", QT_TRANSLATE_NOOP("ColumnHeadings", "<First Name,1200")},
    {"MiddleInitial", QT_TRANSLATE_NOOP("ColumnHeadings", "<MI,400")},
    {"SocialSecurityNumber", QT_TRANSLATE_NOOP("ColumnHeadings", "^SSN,1000")},
    {"DriversLicenseNumber", QT_TRANSLATE_NOOP("ColumnHeadings", "^DLN,1000")},
    {"Address", QT_TRANSLATE_NOOP("ColumnHeadings", "<Address,2700")},
    {"City", QT_TRANSLATE_NOOP("ColumnHeadings", "<City,2700")},
    {"State", QT_TRANSLATE_NOOP("ColumnHeadings", "<State,800")},
    {"Zip", QT_TRANSLATE_NOOP("ColumnHeadings", "<Zip Code,1000")},
    {"BirthDate", QT_TRANSLATE_NOOP("ColumnHeadings", "^Birth Date,1000")},
    {"HomePhone", QT_TRANSLATE_NOOP("ColumnHeadings", "<Home Phone,1300")},
    {"MobilePhone", QT_TRANSLATE_NOOP("ColumnHeadings", "<Mobile Phone,1300")},
    {"WorkPhone", QT_TRANSLATE_NOOP("ColumnHeadings", "<Work Phone,1300")},
    {"EmployerName", QT_TRANSLATE_NOOP("ColumnHeadings", "<Employer Name,2000")},
    {"EmployerAddress", QT_TRANSLATE_NOOP("ColumnHeadings", "<Employer Address,2700")},
    {"RelationshipDescription", QT_TRANSLATE_NOOP("ColumnHeadings", "<Relationship,1400")},
};

// A heading for a field the table above does not know: "EmergencyContact" -> "Emergency Contact".
QString headingFor(const QString &field)
{
    if (field == QLatin1String("EMailAddress"))
        return QStringLiteral("E-Mail Address");
    static const QRegularExpression wordStart(QStringLiteral("(?<=[a-z])(?=[A-Z])"));
    return QString(field).replace(wordStart, QStringLiteral(" "));
}

}   // namespace

frmSelect::frmSelect(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmSelect"));
    setModal(true);
    m_lblGrid = new QLabel(this);
    m_lblGrid->setObjectName(QStringLiteral("lblGrid"));
    m_lblGrid->setWordWrap(true);
    m_grdData = new QTableView(this);
    m_grdData->setObjectName(QStringLiteral("grdData"));
    m_cmdOK = new QPushButton(tr("OK"), this);
    m_cmdOK->setObjectName(QStringLiteral("cmdOK"));
    m_cmdOK->setDefault(true);
    m_cmdCancel = new QPushButton(tr("Cancel"), this);
    m_cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(m_cmdOK, QDialogButtonBox::AcceptRole);
    buttons->addButton(m_cmdCancel, QDialogButtonBox::RejectRole);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_lblGrid);
    layout->addWidget(m_grdData, 1);
    layout->addWidget(buttons);
    basTendmark::FormatDataGrid(m_grdData);
    connect(m_cmdOK, &QPushButton::clicked, this, &frmSelect::cmdOK_Click);
    connect(m_cmdCancel, &QPushButton::clicked, this, &frmSelect::cmdCancel_Click);
    connect(m_grdData, &QTableView::doubleClicked, this, [this](const QModelIndex &index) {
        if (index.isValid() && index.row() < basTendmark::Model(m_grdData)->dataRowCount())
            cmdOK_Click();
    });
    connect(m_grdData->selectionModel(), &QItemSelectionModel::currentChanged, this, &frmSelect::updateOkButton);
    updateOkButton();
}

void frmSelect::setFormCaption(const QString &caption)
{
    setWindowTitle(caption);
}

void frmSelect::setFormLabel(const QString &label)
{
    m_formLabel = label;
    m_lblGrid->setText(QString(label).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
}

QString frmSelect::ColumnSpec(const QStringList &fieldNames)
{
    QStringList entries;
    for (const QString &name : fieldNames) {
        QString entry;
        for (const SpecEntry &s : kSpec)
            if (name == QLatin1String(s.field))
                entry = QCoreApplication::translate("ColumnHeadings", s.entry);
        entries << (entry.isEmpty() ? QStringLiteral("<") + headingFor(name) + QLatin1Char(',') : entry);
    }
    return entries.join(QLatin1Char('|'));
}

void frmSelect::setRecordset(const Query &query)
{
    basErrorHandler::Guard(QStringLiteral("frmSelect.PopulateGrid"), [&] {
        const QStringList names = QueryPages::fieldNames(query);
        if (names.isEmpty())
            return;
        FormatGrid(names.mid(1));
        PopulateGrid(QueryPages::readable(query, names));
    });
    ResizeGrid();
}

void frmSelect::FormatGrid(const QStringList &fieldNames)
{
    m_grdData->setProperty("ColumnSpec", ColumnSpec(fieldNames));
    basTendmark::FormatDataGrid(m_grdData);
}

void frmSelect::PopulateGrid(const Query &query)
{
    basTendmark::PopulateDataGrid(m_grdData, query);
    if (basTendmark::Model(m_grdData)->dataRowCount() > 0)
        basTendmark::SelectRow(m_grdData, 0);
    updateOkButton();
}

void frmSelect::ResizeGrid()
{
    m_grdData->horizontalHeader()->setStretchLastSection(true);
    // Widths from the rows shown first, so that sizing reads one page of a long list, not five.
    m_grdData->horizontalHeader()->setResizeContentsPrecision(50);
    int width = 0;
    for (int c = 0; c < m_grdData->model()->columnCount(); ++c) {
        // The set widths are the least; a number that would be cut off gets the room it needs.
        if (c > 0)
            m_grdData->setColumnWidth(c,
                                      qMax(m_grdData->columnWidth(c), static_cast<QAbstractItemView *>(m_grdData)->sizeHintForColumn(c)));
        width += m_grdData->columnWidth(c);
    }
    const QRect screen = QGuiApplication::primaryScreen() ? QGuiApplication::primaryScreen()->availableGeometry() : QRect(0, 0, 1280, 900);
    resize(qBound(460, width + 40, screen.width() * 9 / 10), qBound(300, 420, screen.height() * 9 / 10));
}

void frmSelect::updateOkButton()
{
    const QModelIndex current = m_grdData->currentIndex();
    m_cmdOK->setEnabled(current.isValid() && current.row() < basTendmark::Model(m_grdData)->dataRowCount());
}

void frmSelect::cmdOK_Click()
{
    const QModelIndex current = m_grdData->currentIndex();
    if (!current.isValid() || current.row() >= basTendmark::Model(m_grdData)->dataRowCount())
        return;
    m_recordId = QString::number(basTendmark::GridRowKey(m_grdData, current.row()));
    m_okClicked = true;
    accept();
}

void frmSelect::cmdCancel_Click()
{
    m_okClicked = false;
    reject();
}

std::optional<QString> frmSelect::pick(const Prompt::PickRequest &request, QWidget *parent)
{
    frmSelect form(parent);
    form.setFormCaption(request.caption);
    form.setFormLabel(request.label);
    form.setRecordset(request.query);
    form.exec();
    if (!form.OKClicked())
        return std::nullopt;
    return form.RecordID();
}
