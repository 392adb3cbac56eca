#include "PasteGuard.h"

#include "AmountBox.h"
#include "FieldRules.h"
#include "Money.h"
#include "PhoneBox.h"
#include "Prompt.h"
#include "basDatabase.h"
#include "basTendmark.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>

namespace {

// The places a mask fills and the punctuation it shows between them.
struct MaskShape
{
    int places = 0;
    QString punctuation;
};

MaskShape shapeOf(const QString &mask)
{
    static const QString placeholders = QStringLiteral("9AaNnXx0Dd#HhBb");
    static const QString modifiers = QStringLiteral("<>!");
    MaskShape shape;
    const QString body = mask.section(QLatin1Char(';'), 0, 0);
    for (qsizetype i = 0; i < body.size(); ++i) {
        const QChar c = body.at(i);
        if (c == QLatin1Char('\\') && i + 1 < body.size())
            shape.punctuation += body.at(++i);
        else if (placeholders.contains(c))
            ++shape.places;
        else if (!modifiers.contains(c))
            shape.punctuation += c;
    }
    return shape;
}

QString withSelectionReplaced(const QString &text, qsizetype start, qsizetype length, qsizetype cursor, const QString &incoming)
{
    QString out = text;
    if (length > 0)
        return out.replace(start, length, incoming);
    return out.insert(cursor, incoming);
}

// As a paste of the whole text: the box tells of an edit, as it does for typing.
void replaceAll(QLineEdit *edit, const QString &text)
{
    edit->selectAll();
    edit->insert(text);
}

}   // namespace

PasteGuard::PasteGuard(QObject *parent, FieldOf field, CaptionOf caption)
    : QObject(parent)
    , m_field(std::move(field))
    , m_caption(std::move(caption))
{ }

void PasteGuard::watch(QWidget *control)
{
    QWidget *target = qobject_cast<QLineEdit *>(control);
    if (auto *combo = qobject_cast<QComboBox *>(control))
        target = combo->lineEdit();
    else if (auto *text = qobject_cast<QPlainTextEdit *>(control))
        target = text->viewport();
    if (!target)
        return;   // check boxes, lists and date boxes take no pasted text of their own
    target->installEventFilter(this);
    if (qobject_cast<QPlainTextEdit *>(control))
        control->installEventFilter(this);   // keys go to the box, the mouse to its viewport
}

QWidget *PasteGuard::controlOf(QObject *watched) const
{
    auto *w = qobject_cast<QWidget *>(watched);
    if (!w)
        return nullptr;
    if (qobject_cast<QComboBox *>(w->parentWidget()) || qobject_cast<QPlainTextEdit *>(w->parentWidget()))
        return w->parentWidget();
    return w;
}

bool PasteGuard::refuse(QWidget *control, const QString &message)
{
    Prompt::message(tr("Data Entry Error"), m_caption(control) + message, Prompt::Icon::Exclamation, Prompt::Ok);
    control->setFocus(Qt::OtherFocusReason);
    return false;
}

bool PasteGuard::insert(QWidget *control, const QString &incoming)
{
    const FieldInfo field = m_field(control);
    QString message;
    if (auto *text = qobject_cast<QPlainTextEdit *>(control)) {
        if (text->isReadOnly())
            return false;
        const QString cleaned = FieldRules::clean(incoming, true);
        QTextCursor cursor = text->textCursor();
        const QString all = text->toPlainText();
        const QString result = withSelectionReplaced(all, cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart(),
                                                     cursor.position(), cleaned);
        if (field.isValid() && !basDatabase::FieldIsValid(field, result, message) && !result.isEmpty())
            return refuse(control, message);
        cursor.insertText(cleaned);
        return true;
    }
    auto *combo = qobject_cast<QComboBox *>(control);
    auto *edit = combo ? combo->lineEdit() : qobject_cast<QLineEdit *>(control);
    if (!edit || edit->isReadOnly())
        return false;
    const QString cleaned = FieldRules::clean(incoming, false);
    const bool phone = qobject_cast<PhoneBox *>(edit) != nullptr;
    if (!edit->inputMask().isEmpty() || phone) {
        const MaskShape shape = phone ? MaskShape {PhoneBox::kMostDigits, QStringLiteral("()-")} : shapeOf(edit->inputMask());
        if (shape.punctuation.contains(QLatin1Char('/'))) {
            const QDate date = basTendmark::ParseDate(cleaned);
            if (!date.isValid())
                return refuse(control, tr(" is not a valid date."));
            if (field.isValid() && !basDatabase::FieldIsValid(field, basTendmark::FormatDate(date), message))
                return refuse(control, message);
            replaceAll(edit, basTendmark::FormatDate(date));
            return true;
        }
        QString digits;
        for (QChar c : cleaned) {
            if (c.isDigit() && c.unicode() < 128)
                digits += c;
            else if (!shape.punctuation.contains(c) && c != QLatin1Char(' '))
                return refuse(control, tr(" takes digits only."));
        }
        if (digits.size() > shape.places)
            return refuse(control, tr(" takes %1 digits; the pasted text has %2.").arg(shape.places).arg(digits.size()));
        replaceAll(edit, digits);
        return true;
    }
    QString result
        = withSelectionReplaced(edit->text(), edit->selectionStart(), edit->selectedText().size(), edit->cursorPosition(), cleaned);
    if (auto *amount = qobject_cast<AmountBox *>(edit)) {
        result.remove(QLatin1Char('$'));
        if (!result.trimmed().isEmpty() && field.isValid() && !basDatabase::FieldIsValid(field, result, message))
            return refuse(control, message);
        const auto cents = Money::parse(result);
        replaceAll(amount, cents ? Money::plain(*cents) : result.trimmed());
        return true;
    }
    if (!result.isEmpty() && field.isValid() && !basDatabase::FieldIsValid(field, result, message))
        return refuse(control, message);
    edit->insert(cleaned);
    return true;
}

bool PasteGuard::eventFilter(QObject *watched, QEvent *event)
{
    QWidget *control = controlOf(watched);
    switch (event->type()) {
    case QEvent::KeyPress:
        if (control && static_cast<QKeyEvent *>(event)->matches(QKeySequence::Paste)) {
            insert(control, QApplication::clipboard()->text());
            return true;
        }
        break;
    case QEvent::Drop:
        if (control) {
            auto *drop = static_cast<QDropEvent *>(event);
            if (drop->mimeData()->hasText())
                insert(control, drop->mimeData()->text());
            drop->acceptProposedAction();
            return true;
        }
        break;
    case QEvent::MouseButtonRelease:
        if (control && static_cast<QMouseEvent *>(event)->button() == Qt::MiddleButton) {
            if (QApplication::clipboard()->supportsSelection())
                insert(control, QApplication::clipboard()->text(QClipboard::Selection));
            return true;
        }
        break;
    case QEvent::ContextMenu:
        if (control) {
            showMenu(control, qobject_cast<QWidget *>(watched), static_cast<QContextMenuEvent *>(event)->globalPos());
            return true;
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

// The box's own menu, its Paste taking the same road as Ctrl+V.
void PasteGuard::showMenu(QWidget *control, QWidget *target, const QPoint &globalPos)
{
    QMenu *menu = nullptr;
    if (auto *text = qobject_cast<QPlainTextEdit *>(control))
        menu = text->createStandardContextMenu(target->mapFromGlobal(globalPos));
    else if (auto *edit = qobject_cast<QLineEdit *>(target))
        menu = edit->createStandardContextMenu();
    if (!menu)
        return;
    for (QAction *action : menu->actions()) {
        if (action->objectName() == QLatin1String("edit-paste")) {
            action->disconnect();
            connect(action, &QAction::triggered, this, [this, control] { insert(control, QApplication::clipboard()->text()); });
        }
    }
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(globalPos);
}
