// ControlBinder: makes the pages' setting controls from the catalogue and keeps them and the open
// document in step — every edit goes into the document, every document change shows in its control.
#pragma once

#include "ConfigDocument.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>

class QWidget;
class TwinLabel;

class ControlBinder : public QObject
{
    Q_OBJECT

public:
    explicit ControlBinder(ConfigDocument &doc, QObject *parent = nullptr);

    /// The widget of a catalogued control (element `index` of a control array), made and wired on
    /// first use and named after the control (arrays as name_index, e.g. txtAwards_2).
    QWidget *control(const QString &name, int index = 0);
    /// The caption label of a slider or text field, list or button: a TwinLabel whose greyed twin shows
    /// while the control is disabled. Sliders' labels show their value.
    TwinLabel *label(const QString &name);

    /// Every control from the document, then every dependency applied, as after a read.
    void showDocument();

Q_SIGNALS:
    /// The mouse came over a control with a help text.
    void helpRequested(const QString &text, MsgType msgType);
    void modelButtonClicked();
    void clientPasswordRequested();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *makeControl(int row, int index);
    void wire(QWidget *widget, int row, int index);
    void showValue(int row, int index);
    void showRow(int row);
    void setControlEnabled(const QString &control, bool enabled);
    void onValueChanged(int row, int index);
    void showHelp(const QObject *widget);

    ConfigDocument &m_doc;
    QHash<int, QList<QWidget *>> m_widgets; // row to its widgets, index order (null where not made yet)
    QHash<QString, TwinLabel *> m_labels; // control name to its caption label
    QHash<const QObject *, std::pair<int, int>> m_where; // widget to its row and index
    QPointer<QWidget> m_hovered; // the control under the mouse
};
