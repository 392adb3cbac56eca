#include "frmLabelPrint.h"

#include "LabelPictures.h"
#include "LabelRun.h"
#include "LabelSheets.h"
#include "Prompt.h"
#include "TmError.h"
#include "UpDown.h"
#include "basErrorHandler.h"
#include "frmLabelSetup.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

QString pdfChoice()
{
    return QCoreApplication::translate("frmLabelPrint", "PDF file");
}

QLineEdit *numberBox(const char *name, QWidget *parent)
{
    auto *box = new QLineEdit(parent);
    box->setObjectName(QLatin1String(name));
    box->setMaximumWidth(60);
    box->setAlignment(Qt::AlignRight);
    return box;
}

}   // namespace

frmLabelPrint::frmLabelPrint(const RecordScope::ActiveScope &active, QWidget *parent) : QDialog(parent), m_active(active)
{
    setObjectName(QStringLiteral("frmLabelPrint"));
    setWindowTitle(tr("Print Labels"));
    setModal(true);
    m_font = QFont(QStringLiteral("Arial"));
    m_font.setPointSizeF(10);
    buildControls();
    basErrorHandler::Guard(QStringLiteral("frmLabelPrint.Form_Load"), [&] { PopulateTemplates(0); });
}

QStringList frmLabelPrint::printerChoices()
{
    return QPrinterInfo::availablePrinterNames() << pdfChoice();
}

void frmLabelPrint::buildControls()
{
    m_cboLabelTemplate = new QComboBox(this);
    m_cboLabelTemplate->setObjectName(QStringLiteral("cboLabelTemplate"));
    m_cboLabelTemplate->setMinimumWidth(340);
    auto *lblTemplate = new QLabel(tr("&Template:"), this);
    lblTemplate->setBuddy(m_cboLabelTemplate);
    m_cboPrinter = new QComboBox(this);
    m_cboPrinter->setObjectName(QStringLiteral("cboPrinter"));
    m_cboPrinter->addItems(printerChoices());
    const QString defaultPrinter = QPrinterInfo::defaultPrinterName();
    m_cboPrinter->setCurrentIndex(defaultPrinter.isEmpty() ? m_cboPrinter->count() - 1 : m_cboPrinter->findText(defaultPrinter));
    auto *lblPrinter = new QLabel(tr("Printer:"), this);
    lblPrinter->setBuddy(m_cboPrinter);

    auto *fraLabelFont = new QGroupBox(tr("Label Font"), this);
    fraLabelFont->setObjectName(QStringLiteral("fraLabelFont"));
    m_lblFont = new QLabel(LabelSheets::fontText(m_font), fraLabelFont);
    m_lblFont->setObjectName(QStringLiteral("lblFont"));
    auto *cmdFonts = new QPushButton(tr("&Font Settings..."), fraLabelFont);
    cmdFonts->setObjectName(QStringLiteral("cmdFonts"));
    auto *fontLayout = new QHBoxLayout(fraLabelFont);
    fontLayout->addWidget(m_lblFont, 1);
    fontLayout->addWidget(cmdFonts);

    auto *fraClientsToPrint = new QGroupBox(tr("Clients To Print"), this);
    fraClientsToPrint->setObjectName(QStringLiteral("fraClientsToPrint"));
    auto *clientsLayout = new QVBoxLayout(fraClientsToPrint);
    const QString clientCaptions[] = {tr("&All clients"), tr("Current &recordset"), tr("Current &client")};
    for (int i = 0; i < 3; ++i) {
        m_optClientsToPrint[i] = new QRadioButton(clientCaptions[i], fraClientsToPrint);
        m_optClientsToPrint[i]->setObjectName(QStringLiteral("optClientsToPrint"));
        m_optClientsToPrint[i]->setProperty("Index", i);
        m_optClientsToPrint[i]->setEnabled(i == 0 || (m_active.kind == RecordScope::Kind::Client && (i == 1 || !m_active.key.isEmpty())));
        clientsLayout->addWidget(m_optClientsToPrint[i]);
    }
    m_optClientsToPrint[0]->setChecked(true);

    auto *fraPrintWhat = new QGroupBox(tr("Print What"), this);
    fraPrintWhat->setObjectName(QStringLiteral("fraPrintWhat"));
    auto *whatLayout = new QVBoxLayout(fraPrintWhat);
    const QString whatCaptions[] = {tr("&Print All"), tr("Print All &Starting With Current Client")};
    for (int i = 0; i < 2; ++i) {
        m_optPrintWhat[i] = new QRadioButton(whatCaptions[i], fraPrintWhat);
        m_optPrintWhat[i]->setObjectName(QStringLiteral("optPrintWhat"));
        m_optPrintWhat[i]->setProperty("Index", i);
        whatLayout->addWidget(m_optPrintWhat[i]);
    }
    m_optPrintWhat[0]->setChecked(true);
    m_optPrintWhat[1]->setEnabled(m_active.kind == RecordScope::Kind::Client && !m_active.key.isEmpty());
    m_chkPrintNamesOnly = new QCheckBox(tr("Print &Names Only"), fraPrintWhat);
    m_chkPrintNamesOnly->setObjectName(QStringLiteral("chkPrintNamesOnly"));
    whatLayout->addWidget(m_chkPrintNamesOnly);

    auto *fraCopies = new QGroupBox(tr("Copies"), this);
    fraCopies->setObjectName(QStringLiteral("fraCopies"));
    m_txtNumberOfCopies = numberBox("txtNumberOfCopies", fraCopies);
    m_txtNumberOfCopies->setText(QStringLiteral("1"));
    m_udnNumberOfCopies = new UpDown(m_txtNumberOfCopies, 1, 1, Labels::MaxCopies, 0, fraCopies);
    m_udnNumberOfCopies->setObjectName(QStringLiteral("udnNumberOfCopies"));
    auto *lblCopies = new QLabel(tr("Number of copies per label:"), fraCopies);
    lblCopies->setBuddy(m_txtNumberOfCopies);
    auto *copiesLayout = new QHBoxLayout(fraCopies);
    copiesLayout->addWidget(lblCopies);
    copiesLayout->addWidget(m_txtNumberOfCopies);
    copiesLayout->addWidget(m_udnNumberOfCopies);
    copiesLayout->addStretch();

    auto *fraStartPosition = new QGroupBox(tr("Start Position"), this);
    fraStartPosition->setObjectName(QStringLiteral("fraStartPosition"));
    m_picPreview = new LabelSheetPicture(fraStartPosition);
    m_txtStartPosition = numberBox("txtStartPosition", fraStartPosition);
    m_txtStartPosition->setText(QStringLiteral("1"));
    m_udnStartPosition = new UpDown(m_txtStartPosition, 1, 1, 1, 0, fraStartPosition);
    m_udnStartPosition->setObjectName(QStringLiteral("udnStartPosition"));
    auto *lblStart = new QLabel(tr("&Start Position:"), fraStartPosition);
    lblStart->setBuddy(m_txtStartPosition);
    auto *lblHint
        = new QLabel(tr("Click the individual label where you want printing to start or enter the label number."), fraStartPosition);
    lblHint->setObjectName(QStringLiteral("lblHint"));
    lblHint->setWordWrap(true);
    auto *startRow = new QHBoxLayout;
    startRow->addWidget(lblStart);
    startRow->addWidget(m_txtStartPosition);
    startRow->addWidget(m_udnStartPosition);
    startRow->addStretch();
    auto *startLayout = new QVBoxLayout(fraStartPosition);
    startLayout->addWidget(m_picPreview, 1);
    startLayout->addLayout(startRow);
    startLayout->addWidget(lblHint);

    auto *cmdOK = new QPushButton(tr("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    auto *cmdCancel = new QPushButton(tr("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    auto *cmdLabelSetup = new QPushButton(tr("&Label Setup..."), this);
    cmdLabelSetup->setObjectName(QStringLiteral("cmdLabelSetup"));

    auto *top = new QGridLayout;
    top->addWidget(lblTemplate, 0, 0);
    top->addWidget(m_cboLabelTemplate, 0, 1);
    top->addWidget(lblPrinter, 1, 0);
    top->addWidget(m_cboPrinter, 1, 1);
    auto *left = new QVBoxLayout;
    left->addLayout(top);
    left->addWidget(fraLabelFont);
    left->addWidget(fraClientsToPrint);
    left->addWidget(fraPrintWhat);
    left->addWidget(fraCopies);
    left->addStretch();
    auto *buttons = new QVBoxLayout;
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    buttons->addSpacing(12);
    buttons->addWidget(cmdLabelSetup);
    buttons->addStretch();
    auto *layout = new QHBoxLayout(this);
    layout->addLayout(left);
    layout->addWidget(fraStartPosition, 1);
    layout->addLayout(buttons);

    for (QLineEdit *box : {m_txtNumberOfCopies, m_txtStartPosition})
        box->installEventFilter(this);
    connect(m_cboLabelTemplate, &QComboBox::currentIndexChanged, this, &frmLabelPrint::cboLabelTemplate_Click);
    connect(cmdFonts, &QPushButton::clicked, this, &frmLabelPrint::cmdFonts_Click);
    connect(cmdLabelSetup, &QPushButton::clicked, this, &frmLabelPrint::cmdLabelSetup_Click);
    connect(cmdOK, &QPushButton::clicked, this, &frmLabelPrint::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_picPreview, &LabelSheetPicture::positionClicked, this, &frmLabelPrint::setStartPosition);
    connect(m_txtStartPosition, &QLineEdit::textChanged, this,
            [this](const QString &text) { m_picPreview->setStartPosition(text.toInt()); });
}

// The number boxes take digits only; Enter moves on to the next control.
bool frmLabelPrint::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && (watched == m_txtNumberOfCopies || watched == m_txtStartPosition)) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            focusNextChild();
            return true;
        }
        const QString text = key->text();
        if (!text.isEmpty() && text.at(0).isPrint() && !text.at(0).isDigit())
            return true;
    }
    return QDialog::eventFilter(watched, event);
}

void frmLabelPrint::PopulateTemplates(qint64 selectId)
{
    m_templates = Labels::loadTemplates();
    const QSignalBlocker block(m_cboLabelTemplate);
    m_cboLabelTemplate->clear();
    int chosen = -1;
    const std::optional<Labels::Template> fallback = Labels::defaultTemplate(m_templates);
    for (int i = 0; i < m_templates.size(); ++i) {
        m_cboLabelTemplate->addItem(m_templates.at(i).description, m_templates.at(i).id);
        if ((selectId != 0 && m_templates.at(i).id == selectId) || (chosen < 0 && fallback && m_templates.at(i).id == fallback->id))
            chosen = i;
    }
    m_cboLabelTemplate->setCurrentIndex(chosen);
    cboLabelTemplate_Click();
}

std::optional<Labels::Template> frmLabelPrint::currentTemplate() const
{
    const int index = m_cboLabelTemplate->currentIndex();
    if (index < 0 || index >= m_templates.size())
        return std::nullopt;
    return m_templates.at(index);
}

void frmLabelPrint::cboLabelTemplate_Click()
{
    const std::optional<Labels::Template> sheet = currentTemplate();
    m_picPreview->LoadLabelPreview(sheet.value_or(Labels::Template {}));
    m_udnStartPosition->setRange(1, std::max(1, sheet ? sheet->perSheet() : 1));
    m_picPreview->setStartPosition(m_txtStartPosition->text().toInt());
}

void frmLabelPrint::setStartPosition(int position)
{
    m_txtStartPosition->setText(QString::number(position));
}

void frmLabelPrint::cmdFonts_Click()
{
    if (const std::optional<QFont> chosen = Prompt::font(tr("Label Font"), m_font)) {
        m_font = *chosen;
        m_lblFont->setText(LabelSheets::fontText(m_font));
    }
}

void frmLabelPrint::cmdLabelSetup_Click()
{
    basErrorHandler::Guard(QStringLiteral("frmLabelPrint.cmdLabelSetup_Click"), [&] {
        const std::optional<Labels::Template> current = currentTemplate();
        frmLabelSetup setup(current ? current->id : 0, this);
        setup.exec();
        PopulateTemplates(setup.savedId() != 0 ? setup.savedId() : current ? current->id : 0);
    });
}

void frmLabelPrint::cmdOK_Click()
{
    const QString title = tr("Print Labels");
    const char *missing = !currentTemplate()              ? QT_TR_NOOP("A label template is required.")
        : m_txtNumberOfCopies->text().trimmed().isEmpty() ? QT_TR_NOOP("Number of copies is required.")
        : m_txtStartPosition->text().trimmed().isEmpty()  ? QT_TR_NOOP("Starting position is required.")
                                                          : nullptr;
    if (missing) {
        Prompt::message(title, tr(missing), Prompt::Icon::Exclamation, Prompt::Ok);
        return;
    }
    bool printed = false;
    basErrorHandler::Guard(QStringLiteral("frmLabelPrint.PrintLabels"), [&] { printed = PrintLabels(); });
    if (printed)
        accept();
}

bool frmLabelPrint::PrintLabels()
{
    const QString title = tr("Print Labels");
    Labels::Request request;
    request.sheet = *currentTemplate();
    request.reportType = m_optClientsToPrint[2]->isChecked() ? RecordScope::CurrentRecord
        : m_optClientsToPrint[1]->isChecked()                ? RecordScope::CurrentRecordset
                                                             : RecordScope::AllRecords;
    request.scope = m_active;
    request.startWith = m_optPrintWhat[1]->isChecked() ? m_active.key : QString();
    request.startPosition = m_txtStartPosition->text().toInt();
    request.copies = m_txtNumberOfCopies->text().toInt();
    request.namesOnly = m_chkPrintNamesOnly->isChecked();
    const Labels::Plan plan = Labels::planRun(request);
    if (!plan.ok) {
        Prompt::message(title, plan.error, Prompt::Icon::Exclamation, Prompt::Ok);
        return false;
    }
    const LabelSheets::Sheets sheets {request.sheet, plan.pages, m_font, false};
    const auto savePdf = [sheets, title](const QString &path) {
        const LabelSheets::Result result = LabelSheets::writePdf(sheets, path);
        if (!result.ok)
            Prompt::message(title, result.error, Prompt::Icon::Exclamation, Prompt::Ok);
        return result.ok;
    };
    if (m_cboPrinter->currentText() == pdfChoice()) {
        const QString path
            = Prompt::saveFileName(tr("Save Labels as PDF"), tr("PDF Files (*.pdf)"), QStringLiteral("pdf"), tr("Labels.pdf"));
        return !path.isEmpty() && savePdf(path);
    }
    Prompt::PreviewRequest preview;
    preview.caption = title;
    preview.pdfName = tr("Labels.pdf");
    preview.printerName = m_cboPrinter->currentText();
    preview.pageLayout = LabelSheets::pageLayout(request.sheet);
    preview.paint = [sheets, title](QPagedPaintDevice *device) {
        const LabelSheets::Result result = LabelSheets::render(sheets, device);
        if (!result.ok)
            Prompt::message(title, result.error, Prompt::Icon::Exclamation, Prompt::Ok);
        return result.ok;
    };
    preview.savePdf = savePdf;
    Prompt::preview(preview);
    return true;
}
