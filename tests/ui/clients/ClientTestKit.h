#pragma once

// Shared by the client window tests: a main window on a fresh database, and
// ways to reach and type into the windows' controls.
#include "MdiChild.h"
#include "Desk.h"
#include "ScriptedPrompts.h"
#include "TestDatabase.h"
#include "frmMain.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
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
        QVariantMap values{{QStringLiteral("LastName"), last}, {QStringLiteral("FirstName"), first},
                           {QStringLiteral("MiddleInitial"), middle},
                           {QStringLiteral("SocialSecurityNumber"), QStringLiteral("9000%1").arg(serial, 5, 10, QLatin1Char('0'))},
                           {QStringLiteral("Address"), QStringLiteral("%1 Test Lane").arg(serial)},
                           {QStringLiteral("City"), QStringLiteral("Testville")}, {QStringLiteral("State"), QStringLiteral("IL")}};
        for (auto it = more.constBegin(); it != more.constEnd(); ++it)
            values.insert(it.key(), it.value());
        return TestDatabase::insert(QStringLiteral("Client"), values);
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
inline void typeInto(QWidget *window, const QString &dataField, const QString &text)
{
    QWidget *c = fieldOf(window, dataField);
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
    if (!text.isEmpty())
        QTest::keyClicks(c, text);
}

inline Prompt::Message findMessage(const ScriptedPrompts &prompts, const QString &title)
{
    for (const Prompt::Message &m : prompts.messages())
        if (m.title == title)
            return m;
    return {};
}
