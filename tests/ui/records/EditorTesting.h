#pragma once

#include "RecordEditor.h"
#include "Desk.h"
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
#include <QTest>

// A main window on a fresh database with one client, and the means to work an editor as a user would.
struct EditorDesk : Desk
{
    qint64 clientId = 0;

    EditorDesk()
    {
        clientId = TestDatabase::insert(QStringLiteral("Client"),
                                        {{QStringLiteral("LastName"), QStringLiteral("O'Brien")},
                                         {QStringLiteral("FirstName"), QStringLiteral("Mary")},
                                         {QStringLiteral("MiddleInitial"), QStringLiteral("K")},
                                         {QStringLiteral("SocialSecurityNumber"), QStringLiteral("123456789")},
                                         {QStringLiteral("DriversLicenseNumber"), QStringLiteral("D1234")}});
    }

    // The main window must not outlive its children's signals: close them first, dropping changes.
    ~EditorDesk()
    {
        for (QMdiSubWindow *sub : main.mdiArea()->subWindowList())
            if (auto *editor = qobject_cast<RecordEditor *>(sub->widget()))
                editor->setDataChanged(false);
        main.mdiArea()->closeAllSubWindows();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    template<typename T>
    T *open(RecordKind editor, const QString &recordId = {})
    {
        main.openRecordEditor(editor, QString::number(clientId), recordId);
        return qobject_cast<T *>(main.activeChild());
    }
};

inline QString statusText(RecordEditor *w) { return w->findChild<QLabel *>(QStringLiteral("lblStatus"))->text(); }
inline QPushButton *button(RecordEditor *w, const char *name) { return w->findChild<QPushButton *>(QLatin1String(name)); }
inline QLineEdit *lineEdit(RecordEditor *w, const char *column) { return qobject_cast<QLineEdit *>(w->boundControl(QLatin1String(column))); }
inline QComboBox *combo(RecordEditor *w, const char *column) { return qobject_cast<QComboBox *>(w->boundControl(QLatin1String(column))); }
inline QDateEdit *dateEdit(RecordEditor *w, const char *column) { return qobject_cast<QDateEdit *>(w->boundControl(QLatin1String(column))); }

inline void typeInto(QLineEdit *edit, const QString &text)
{
    edit->setFocus();
    edit->selectAll();
    QTest::keyClicks(edit, text);
}

inline void choose(QComboBox *list, const QString &text)
{
    const int i = list->findText(text);
    QVERIFY2(i >= 0, qPrintable(text));
    list->setCurrentIndex(i);
}

inline QAction *menu(frmMain &main, const char *name) { return main.findChild<QAction *>(QLatin1String(name)); }
