#include "frmLabelSetup.h"

#include "LabelLayout.h"
#include "LabelPictures.h"
#include "Prompt.h"
#include "UpDown.h"
#include "basErrorHandler.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace {

bool isNumber(const QString &text)
{
    bool ok = false;
    text.trimmed().toDouble(&ok);
    return ok;
}

}   // namespace

frmLabelSetup::frmLabelSetup(qint64 selectId, QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmLabelSetup"));
    setWindowTitle(tr("Label Setup"));
    setModal(true);
    buildControls();
    basErrorHandler::Guard(QStringLiteral("frmLabelTemplates.Form_Load"), [&] { loadTemplates(selectId); });
}

void frmLabelSetup::buildControls()
{
    m_cboTemplate = new QComboBox(this);
    m_cboTemplate->setObjectName(QStringLiteral("cboTemplate"));
    m_cboTemplate->setEditable(true);
    m_cboTemplate->setInsertPolicy(QComboBox::NoInsert);
    m_cboTemplate->setMinimumWidth(340);
    auto *lblTemplate = new QLabel(tr("Te&mplate:"), this);
    lblTemplate->setBuddy(m_cboTemplate);

    const struct
    {
        const char *box;
        const char *upDown;
        const char *caption;
        const char *column;
        const char *required;
        bool count;
    } rows[] = {
        {"txtTopMargin", "udnTopMargin", QT_TR_NOOP("&Top margin:"), "TopMargin", QT_TR_NOOP("Top Margin is required."), false},
        {"txtSideMargin", "udnSideMargin", QT_TR_NOOP("&Side margin:"), "SideMargin", QT_TR_NOOP("Side Margin is required."), false},
        {"txtVerticalPitch", "udnVerticalPitch", QT_TR_NOOP("&Vertical pitch:"), "VerticalPitch", QT_TR_NOOP("Vertical Pitch is required."),
         false},
        {"txtHorizontalPitch", "udnHorizontalPitch", QT_TR_NOOP("&Horizontal pitch:"), "HorizontalPitch",
         QT_TR_NOOP("Horizontal Pitch is required."), false},
        {"txtLabelHeight", "udnLabelHeight", QT_TR_NOOP("Label h&eight:"), "Height", QT_TR_NOOP("Label Height is required."), false},
        {"txtLabelWidth", "udnLabelWidth", QT_TR_NOOP("Label &width:"), "Width", QT_TR_NOOP("Label Width is required."), false},
        {"txtNumberAcross", "udnNumberAcross", QT_TR_NOOP("Number &across:"), "NumberAcross", QT_TR_NOOP("Number Across is required."),
         true},
        {"txtNumberDown", "udnNumberDown", QT_TR_NOOP("Number &down:"), "NumberDown", QT_TR_NOOP("Number Down is required."), true},
    };
    auto *grid = new QGridLayout;
    grid->addWidget(lblTemplate, 0, 0);
    grid->addWidget(m_cboTemplate, 0, 1, 1, 3);
    int row = 1;
    for (const auto &r : rows) {
        auto *box = new QLineEdit(this);
        box->setObjectName(QLatin1String(r.box));
        box->setMaximumWidth(70);
        box->setAlignment(Qt::AlignRight);
        box->installEventFilter(this);
        auto *upDown = r.count ? new UpDown(box, 1, 0, 200, 0, this) : new UpDown(box, 0.05, 0, 20, 2, this);
        upDown->setObjectName(QLatin1String(r.upDown));
        auto *label = new QLabel(tr(r.caption), this);
        label->setBuddy(box);
        grid->addWidget(label, row, 0);
        auto *pair = new QHBoxLayout;
        pair->setSpacing(1);
        pair->addWidget(box);
        pair->addWidget(upDown);
        pair->addStretch();
        grid->addLayout(pair, row, 1);
        ++row;
        m_measures.append({box, r.column, r.required, r.count});
    }
    m_cboPaperSize = new QComboBox(this);
    m_cboPaperSize->setObjectName(QStringLiteral("cboPaperSize"));
    m_cboPaperSize->addItem(tr("Letter (8.5 x 11 in)"), Labels::paperName(Labels::Paper::Letter));
    m_cboPaperSize->addItem(tr("A4 (210 x 297 mm)"), Labels::paperName(Labels::Paper::A4));
    auto *lblPaper = new QLabel(tr("&Paper size:"), this);
    lblPaper->setBuddy(m_cboPaperSize);
    grid->addWidget(lblPaper, row, 0);
    grid->addWidget(m_cboPaperSize, row++, 1);
    m_chkSetAsDefault = new QCheckBox(tr("Set As De&fault"), this);
    m_chkSetAsDefault->setObjectName(QStringLiteral("chkSetAsDefault"));
    grid->addWidget(m_chkSetAsDefault, row++, 1);
    auto *units = new QLabel(tr("All measures are in inches."), this);
    grid->addWidget(units, row++, 0, 1, 2);

    auto *legend = new LabelLegendPicture(this);
    grid->addWidget(legend, 1, 2, row - 1, 2);
    grid->setColumnStretch(3, 1);

    auto *cmdOK = new QPushButton(tr("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    auto *cmdCancel = new QPushButton(tr("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdCancel->setFocusPolicy(Qt::NoFocus);   // leaving without saving does not check the box left
    auto *cmdNew = new QPushButton(tr("&New"), this);
    cmdNew->setObjectName(QStringLiteral("cmdNew"));
    auto *cmdDelete = new QPushButton(tr("De&lete"), this);
    cmdDelete->setObjectName(QStringLiteral("cmdDelete"));
    auto *buttons = new QVBoxLayout;
    for (QPushButton *b : {cmdOK, cmdCancel, cmdNew, cmdDelete})
        buttons->addWidget(b);
    buttons->insertSpacing(2, 12);
    buttons->addStretch();
    auto *layout = new QHBoxLayout(this);
    layout->addLayout(grid, 1);
    layout->addLayout(buttons);

    connect(m_cboTemplate, &QComboBox::activated, this, &frmLabelSetup::cboTemplate_Click);
    connect(cmdNew, &QPushButton::clicked, this, &frmLabelSetup::cmdNew_Click);
    connect(cmdDelete, &QPushButton::clicked, this, &frmLabelSetup::cmdDelete_Click);
    connect(cmdOK, &QPushButton::clicked, this, &frmLabelSetup::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void frmLabelSetup::loadTemplates(qint64 selectId)
{
    m_templates = Labels::loadTemplates();
    m_cboTemplate->clear();
    int chosen = m_templates.isEmpty() ? -1 : 0;
    for (int i = 0; i < m_templates.size(); ++i) {
        m_cboTemplate->addItem(m_templates.at(i).description, m_templates.at(i).id);
        if (m_templates.at(i).id == selectId)
            chosen = i;
    }
    m_cboTemplate->setCurrentIndex(chosen);
    if (chosen >= 0)
        PopulateControls(m_templates.at(chosen));
    else
        cmdNew_Click();
}

void frmLabelSetup::cboTemplate_Click(int index)
{
    if (index >= 0 && index < m_templates.size())
        PopulateControls(m_templates.at(index));
}

QString frmLabelSetup::format(double value, bool count)
{
    return count ? QString::number(qRound(value)) : QString::number(value, 'f', 2);
}

void frmLabelSetup::PopulateControls(const Labels::Template &t)
{
    m_loaded = t;
    const double values[]
        = {t.topMargin, t.sideMargin, t.verticalPitch, t.horizontalPitch, t.height, t.width, double(t.numberAcross), double(t.numberDown)};
    for (int i = 0; i < m_measures.size(); ++i)
        m_measures[i].box->setText(t.id == 0 ? QString() : format(values[i], m_measures[i].count));
    m_cboTemplate->setEditText(t.description);
    m_cboPaperSize->setCurrentIndex(m_cboPaperSize->findData(Labels::paperName(t.paper)));
    m_chkSetAsDefault->setChecked(t.isDefault);
}

void frmLabelSetup::cmdNew_Click()
{
    PopulateControls(Labels::Template {});
    m_cboTemplate->setFocus();
}

// A measure left as it was loaded keeps the stored value, not its two-decimal rounding.
double frmLabelSetup::valueOf(const Measure &m, double loaded) const
{
    const QString text = m.box->text().trimmed();
    if (m_loaded.id != 0 && text == format(loaded, m.count))
        return loaded;
    return m.count ? qRound(text.toDouble()) : text.toDouble();
}

QLineEdit *frmLabelSetup::boxFor(const QString &column) const
{
    for (const Measure &m : m_measures)
        if (QLatin1String(m.column) == column)
            return m.box;
    return nullptr;
}

// A measurement box refuses to be left holding something that is not a number.
bool frmLabelSetup::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut && !m_complaining) {
        for (const Measure &m : m_measures) {
            if (m.box != watched)
                continue;
            const QString text = m.box->text().trimmed();
            if (text.isEmpty())
                break;
            if (!isNumber(text)) {
                m_complaining = true;
                Prompt::message(tr("Label Setup"), tr("Value must be numeric."), Prompt::Icon::Exclamation, Prompt::Ok);
                QLineEdit *box = m.box;
                QTimer::singleShot(0, box, [this, box] {
                    box->setFocus();
                    box->selectAll();
                    m_complaining = false;
                });
            } else {
                m.box->setText(format(text.toDouble(), m.count));
            }
            break;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmLabelSetup::cmdOK_Click()
{
    // The click that left a box holding no number has already been answered.
    if (m_complaining)
        return;
    bool saved = false;
    basErrorHandler::Guard(QStringLiteral("frmLabelTemplates.UpdateTemplate"), [&] { saved = UpdateTemplate(); });
    if (saved)
        accept();
}

bool frmLabelSetup::UpdateTemplate()
{
    const QString title = tr("Label Setup");
    const auto refuse = [&](const QString &text, QWidget *focus) {
        Prompt::message(title, text, Prompt::Icon::Exclamation, Prompt::Ok);
        if (focus)
            focus->setFocus();
        return false;
    };
    if (m_cboTemplate->currentText().trimmed().isEmpty())
        return refuse(tr("A template name is required."), m_cboTemplate);
    for (const Measure &m : m_measures)
        if (m.box->text().trimmed().isEmpty())
            return refuse(tr(m.required), m.box);
    for (const Measure &m : m_measures)
        if (!isNumber(m.box->text()))
            return refuse(tr("Value must be numeric."), m.box);

    Labels::Template t = m_loaded;
    t.description = m_cboTemplate->currentText().trimmed();
    t.topMargin = valueOf(m_measures[0], m_loaded.topMargin);
    t.sideMargin = valueOf(m_measures[1], m_loaded.sideMargin);
    t.verticalPitch = valueOf(m_measures[2], m_loaded.verticalPitch);
    t.horizontalPitch = valueOf(m_measures[3], m_loaded.horizontalPitch);
    t.height = valueOf(m_measures[4], m_loaded.height);
    t.width = valueOf(m_measures[5], m_loaded.width);
    t.numberAcross = int(valueOf(m_measures[6], m_loaded.numberAcross));
    t.numberDown = int(valueOf(m_measures[7], m_loaded.numberDown));
    t.paper = Labels::paperFromName(m_cboPaperSize->currentData().toString()).value_or(Labels::Paper::Letter);
    t.isDefault = m_chkSetAsDefault->isChecked();
    if (const Labels::Problem p = Labels::validate(t); !p.ok())
        return refuse(p.text, boxFor(p.column));
    QString error;
    if (!Labels::saveTemplate(t, &error))
        return refuse(error, m_cboTemplate);
    m_savedId = t.id;
    return true;
}

void frmLabelSetup::cmdDelete_Click()
{
    basErrorHandler::Guard(QStringLiteral("frmLabelTemplates.cmdDelete_Click"), [&] {
        if (m_loaded.id == 0)
            return;
        const QString name = m_loaded.description;
        if (Prompt::message(tr("Delete Label Template?"), tr("Are you sure you want to delete '%1'?").arg(name), Prompt::Icon::Question,
                            Prompt::Yes | Prompt::No)
            != Prompt::Yes)
            return;
        Labels::deleteTemplate(m_loaded.id);
        Prompt::message(tr("Label Setup"), tr("Template '%1' deleted.").arg(name), Prompt::Icon::Information, Prompt::Ok);
        loadTemplates(0);
    });
}
