#pragma once

#include "FieldInfo.h"

#include <QObject>
#include <functional>

class QWidget;

// Pasted and dropped text reaches a data-entry box only when the box's field
// accepts the whole result, by the rules typing and saving follow. Otherwise
// the user is told why and the box keeps what it had: nothing is cut short or
// reshaped into another value on the way in.
class PasteGuard : public QObject
{
    Q_OBJECT

public:
    using FieldOf = std::function<FieldInfo(const QWidget *control)>;
    using CaptionOf = std::function<QString(const QWidget *control)>;

    PasteGuard(QObject *parent, FieldOf field, CaptionOf caption);

    // Watches a line edit, a multi-line box or an editable drop-down list.
    void watch(QWidget *control);
    // Puts text into the control as a paste would; false (and the user told) when refused.
    bool insert(QWidget *control, const QString &incoming);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *controlOf(QObject *watched) const;
    bool refuse(QWidget *control, const QString &message);
    void showMenu(QWidget *control, QWidget *target, const QPoint &globalPos);

    FieldOf m_field;
    CaptionOf m_caption;
};
