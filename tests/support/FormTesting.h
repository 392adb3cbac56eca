#pragma once

// What the window tests share: a main window on a fresh database (empty, or
// with one client for the record editors), and ways to reach and type into
// the windows' controls.
#include "Desk.h"
#include "MdiChild.h"
#include "RecordEditor.h"
#include "ScriptedPrompts.h"
#include "TestDatabase.h"
#include "frmMain.h"

#include <QAction>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>

struct ClientWorld : Desk
{
    ClientWorld() : Desk(QSize(1100, 760)) { main.refreshOptionFlags(); }
    ~ClientWorld()
    {
        prompts.answer(Prompt::No);   // a pending change is dropped
        main.close();
    }

    void toolbar(const char *key) { main.toolbarButton(QString::fromLatin1(key))->trigger(); }
    // Closes a child window as its close box does: it is gone once this returns.
    static void closeWindow(QWidget *w)
    {
        (w->parentWidget() ? w->parentWidget() : w)->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

    static qint64 addClient(const QString &last, const QString &first, const QString &middle = QStringLiteral("A"),
                            const QVariantMap &more = {})
    {
        // Complete by default: a unique number and address, so that saving needs no answers.
        static int serial = 0;
        ++serial;
        QVariantMap values {{QStringLiteral("LastName"), last},
                            {QStringLiteral("FirstName"), first},
                            {QStringLiteral("MiddleInitial"), middle},
                            {QStringLiteral("SocialSecurityNumber"), QStringLiteral("9000%1").arg(serial, 5, 10, QLatin1Char('0'))},
                            {QStringLiteral("Address"), QStringLiteral("%1 Test Lane").arg(serial)},
                            {QStringLiteral("City"), QStringLiteral("Testville")},
                            {QStringLiteral("State"), QStringLiteral("IL")}};
        for (auto it = more.constBegin(); it != more.constEnd(); ++it)
            values.insert(it.key(), it.value());
        return TestDatabase::insert(QStringLiteral("Client"), values);
    }
};

// The same with one client on file, and the means to work its record editors as a user would.
struct EditorDesk : ClientWorld
{
    const qint64 clientId = addClient("O'Brien", "Mary", "K", {{"SocialSecurityNumber", "123456789"}, {"DriversLicenseNumber", "D1234"}});

    template<typename T> T *open(RecordKind editor, const QString &recordId = {})
    {
        main.openRecordEditor(editor, QString::number(clientId), recordId);
        return qobject_cast<T *>(main.activeChild());
    }
};

inline QWidget *fieldOf(QWidget *window, const QString &dataField)
{
    for (QWidget *c : window->findChildren<QWidget *>())
        if (c->property("DataField").toString() == dataField)
            return c;
    qFatal("no control bound to %s", qPrintable(dataField));
    return nullptr;
}

// Types text into a control as a user would: the old content is replaced.
// Key by key, as a keyboard types: letters beyond ASCII (ễ, ñ) arrive as the text of their key press.
inline void typeText(QWidget *c, const QString &text)
{
    for (const QChar ch : text) {
        if (ch.unicode() < 0x80)
            QTest::keyClick(c, ch.toLatin1());
        else
            QTest::sendKeyEvent(QTest::Click, c, Qt::Key_unknown, QString(ch), Qt::NoModifier);
    }
}

inline void typeInto(QWidget *c, const QString &text)
{
    if (auto *combo = qobject_cast<QComboBox *>(c); combo && !combo->isEditable()) {
        combo->setCurrentIndex(combo->findText(text));
        return;
    }
    if (auto *combo = qobject_cast<QComboBox *>(c))
        c = combo->lineEdit();
    c->setFocus();
    if (auto *edit = qobject_cast<QLineEdit *>(c)) {
        edit->selectAll();
        edit->del();
        edit->setCursorPosition(0);
    } else if (auto *plain = qobject_cast<QPlainTextEdit *>(c)) {
        plain->selectAll();
        plain->textCursor().removeSelectedText();
    }
    typeText(c, text);
}

inline void typeInto(QWidget *window, const QString &dataField, const QString &text)
{
    typeInto(fieldOf(window, dataField), text);
}

// Types into several controls: "Field=value;Field=value", an empty value clearing the control.
inline void typeFields(QWidget *window, const QString &assignments)
{
    for (const QString &pair : assignments.split(QLatin1Char(';'), Qt::SkipEmptyParts))
        typeInto(window, pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
}

inline QString statusText(QWidget *w)
{
    return w->findChild<QLabel *>(QStringLiteral("lblStatus"))->text();
}
inline QPushButton *button(QWidget *w, const char *name)
{
    return w->findChild<QPushButton *>(QLatin1String(name));
}
inline QLineEdit *lineEdit(RecordEditor *w, const char *column)
{
    return qobject_cast<QLineEdit *>(w->boundControl(QLatin1String(column)));
}
inline QComboBox *combo(RecordEditor *w, const char *column)
{
    return qobject_cast<QComboBox *>(w->boundControl(QLatin1String(column)));
}
inline QDateEdit *dateEdit(RecordEditor *w, const char *column)
{
    return qobject_cast<QDateEdit *>(w->boundControl(QLatin1String(column)));
}

// Clicks a row of a grid as a user does (twice: a double-click).
inline void clickRow(QTableView *grid, int row, bool twice = false)
{
    const QPoint at = grid->visualRect(grid->model()->index(row, 2)).center();
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, at);
    if (twice)
        QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, at);
}

inline void choose(QComboBox *list, const QString &text)
{
    const int i = list->findText(text);
    QVERIFY2(i >= 0, qPrintable(text));
    list->setCurrentIndex(i);
}

inline QAction *menu(frmMain &main, const char *name)
{
    return main.findChild<QAction *>(QLatin1String(name));
}
