#include "ControlBinder.h"

#include "ControlRules.h"
#include "TwinLabel.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>
#include <QSlider>
#include <cstring>

namespace {

constexpr int fieldHeight = 20; // lists and text fields, as tall as a check box row allows

const SettingCatalog &catalog()
{
    return SettingCatalog::instance();
}

QString widgetName(const SettingRow &r, int index)
{
    return r.count > 1 || r.kind == ControlKind::OptionPair ? r.control + u'_' + QString::number(index) : r.control;
}

// A control's caption label is "lbl" and the control's name without its type prefix; the greyed twin
// adds "Dis" (the 2D sound slider's twin is written in lower case).
std::pair<QString, QString> labelNames(const QString &control)
{
    if (control == u"sld2dsnd")
        return { QStringLiteral("lbl2dsnd"), QStringLiteral("lbl2dsnddis") };
    QString base = control;
    for (const char *prefix : { "sld", "sl", "txt", "cb", "cmd" }) {
        if (base.startsWith(QLatin1StringView(prefix)) && base.size() > int(strlen(prefix))
            && !base.at(int(strlen(prefix))).isLower()) {
            base = base.mid(int(strlen(prefix)));
            break;
        }
    }
    const QString name = QStringLiteral("lbl") + base;
    return { name, name + QStringLiteral("Dis") };
}

QString helpKey(const SettingRow &r, int index)
{
    if (r.kind == ControlKind::OptionPair)
        return r.control + u'(' + QString::number(index) + u')';
    return r.count > 1 ? QString() : r.control; // the award fields and tier boxes have no help
}

} // namespace

ControlBinder::ControlBinder(ConfigDocument &doc, QObject *parent)
    : QObject(parent)
    , m_doc(doc)
{
    connect(&m_doc, &ConfigDocument::valueChanged, this, &ControlBinder::onValueChanged);
    connect(&m_doc, &ConfigDocument::contentReset, this, &ControlBinder::showDocument);
}

QWidget *ControlBinder::control(const QString &name, int index)
{
    const int row = catalog().indexOfControl(name);
    Q_ASSERT_X(row >= 0, "ControlBinder::control", "not a catalogued control");
    QList<QWidget *> &widgets = m_widgets[row];
    const SettingRow &r = catalog().row(row);
    widgets.resize(qMax(r.count, r.kind == ControlKind::OptionPair ? 2 : 1));
    if (!widgets[index]) {
        widgets[index] = makeControl(row, index);
        widgets[index]->setObjectName(widgetName(r, index));
        widgets[index]->installEventFilter(this);
        m_where.insert(widgets[index], { row, index });
        showValue(row, index);
        wire(widgets[index], row, index);
    }
    return widgets[index];
}

TwinLabel *ControlBinder::label(const QString &name)
{
    if (TwinLabel *existing = m_labels.value(name))
        return existing;
    const int row = catalog().indexOfControl(name);
    Q_ASSERT_X(row >= 0, "ControlBinder::label", "not a catalogued control");
    const auto [normal, greyed] = labelNames(name);
    auto *twin = new TwinLabel(normal, greyed);
    const SettingRow &r = catalog().row(row);
    // A slider's label reads its value; every other label is the caption.
    twin->setText(
        r.kind == ControlKind::Slider ? ControlRules::sliderLabel(r, m_doc.state(row)) : r.caption + r.captionSuffix);
    m_labels.insert(name, twin);
    return twin;
}

QWidget *ControlBinder::makeControl(int row, int index)
{
    const SettingRow &r = catalog().row(row);
    switch (r.kind) {
    case ControlKind::CheckBox:
        return new QCheckBox(r.count > 1 ? QStringLiteral("Tier %1").arg(index + 1) : r.caption);
    case ControlKind::OptionPair:
        return new QRadioButton(r.entries.value(index));
    case ControlKind::List: {
        auto *list = new QComboBox;
        list->addItems(r.entries);
        // Never narrower than its longest entry, so the shown entry is always whole.
        list->setSizeAdjustPolicy(QComboBox::AdjustToContents);
        // The open list, whose items have margins of their own, never clips an entry either.
        list->view()->setMinimumWidth(list->view()->sizeHintForColumn(0) + 8);
        list->setFixedHeight(fieldHeight);
        return list;
    }
    case ControlKind::Slider: {
        auto *slider = new QSlider(Qt::Horizontal);
        slider->setRange(r.slider.minimum, r.slider.maximum);
        slider->setPageStep(r.slider.largeStep);
        slider->setSingleStep(r.slider.smallStep);
        return slider;
    }
    case ControlKind::TextField: {
        auto *edit = new QLineEdit;
        if (ControlRules::isNumericField(r.control))
            edit->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), edit));
        edit->setFixedHeight(fieldHeight);
        return edit;
    }
    case ControlKind::Button: {
        auto *button = new QPushButton(r.caption);
        button->setFixedHeight(fieldHeight + 2);
        return button;
    }
    }
    return nullptr;
}

void ControlBinder::wire(QWidget *widget, int row, int index)
{
    const SettingRow &r = catalog().row(row);
    if (auto *box = qobject_cast<QRadioButton *>(widget)) {
        connect(box, &QRadioButton::toggled, this, [this, row, index](bool on) {
            if (on)
                m_doc.setState(row, 0, index);
        });
    } else if (auto *box = qobject_cast<QCheckBox *>(widget)) {
        connect(box, &QCheckBox::toggled, this, [this, row, index](bool on) { m_doc.setState(row, index, on); });
    } else if (auto *list = qobject_cast<QComboBox *>(widget)) {
        connect(list, &QComboBox::currentIndexChanged, this, [this, row](int position) {
            if (position >= 0)
                m_doc.setState(row, 0, position);
        });
    } else if (auto *slider = qobject_cast<QSlider *>(widget)) {
        connect(slider, &QSlider::valueChanged, this, [this, row](int position) { m_doc.setState(row, 0, position); });
    } else if (auto *edit = qobject_cast<QLineEdit *>(widget)) {
        const bool turnsZero = ControlRules::mustNotBeEmpty(r.control);
        const bool numeric = ControlRules::isNumericField(r.control);
        connect(edit, &QLineEdit::textChanged, this, [this, edit, row, index, turnsZero, numeric](const QString &text) {
            if (text.isEmpty() && turnsZero) {
                edit->setText(QStringLiteral("0")); // comes back here with "0"
                edit->setCursorPosition(1);
                return;
            }
            // An emptied number is no value: the document keeps the last one, and the field shows it again when
            // it loses focus.
            if (text.isEmpty() && numeric)
                return;
            m_doc.setText(row, index, text);
        });
    } else if (auto *button = qobject_cast<QPushButton *>(widget)) {
        if (r.control == u"cmdModel")
            connect(button, &QPushButton::clicked, this, &ControlBinder::modelButtonClicked);
        else if (r.control == u"cmdClPas")
            connect(button, &QPushButton::clicked, this, &ControlBinder::clientPasswordRequested);
    }
}

void ControlBinder::showValue(int row, int index)
{
    const QList<QWidget *> widgets = m_widgets.value(row);
    const SettingRow &r = catalog().row(row);
    if (r.kind == ControlKind::OptionPair) {
        const int selected = m_doc.state(row);
        for (int k = 0; k < widgets.size(); ++k) {
            if (auto *option = qobject_cast<QRadioButton *>(widgets[k])) {
                const QSignalBlocker blocker(option);
                option->setChecked(k == selected);
            }
        }
        return;
    }
    QWidget *widget = widgets.value(index);
    if (r.kind == ControlKind::Slider) {
        if (TwinLabel *twin = m_labels.value(r.control))
            twin->setText(ControlRules::sliderLabel(r, m_doc.state(row)));
    }
    if (!widget)
        return;
    const QSignalBlocker blocker(widget);
    if (auto *box = qobject_cast<QCheckBox *>(widget))
        box->setChecked(m_doc.state(row, index) != 0);
    else if (auto *list = qobject_cast<QComboBox *>(widget))
        list->setCurrentIndex(m_doc.state(row));
    else if (auto *slider = qobject_cast<QSlider *>(widget))
        slider->setValue(m_doc.state(row));
    else if (auto *edit = qobject_cast<QLineEdit *>(widget)) {
        if (edit->text() != m_doc.text(row, index))
            edit->setText(m_doc.text(row, index));
    } else if (auto *button = qobject_cast<QPushButton *>(widget)) {
        if (r.isStored())
            button->setText(m_doc.text(row, index));
    }
}

void ControlBinder::showRow(int row)
{
    const int count = int(m_widgets.value(row).size());
    for (int k = 0; k < count; ++k)
        showValue(row, k);
}

void ControlBinder::showDocument()
{
    for (auto it = m_widgets.cbegin(); it != m_widgets.cend(); ++it)
        showRow(it.key());
    for (const ControlRules::Enablement &e : ControlRules::allEffects(m_doc))
        setControlEnabled(e.control, e.enabled);
}

void ControlBinder::onValueChanged(int row, int index)
{
    showValue(row, index);
    // A help text that depends on the value follows it while the mouse stays on the control.
    if (m_hovered && m_where.value(m_hovered).first == row)
        showHelp(m_hovered);
    const QString &name = catalog().row(row).control;
    for (const ControlRules::Enablement &e : ControlRules::effectsOf(name, m_doc))
        setControlEnabled(e.control, e.enabled);
}

void ControlBinder::setControlEnabled(const QString &control, bool enabled)
{
    for (QWidget *widget : m_widgets.value(catalog().indexOfControl(control))) {
        if (widget)
            widget->setEnabled(enabled);
    }
    if (TwinLabel *twin = m_labels.value(control))
        twin->setActive(enabled);
}

void ControlBinder::showHelp(const QObject *widget)
{
    const auto it = m_where.constFind(widget);
    if (it == m_where.cend())
        return;
    const auto [row, index] = *it;
    const SettingRow &r = catalog().row(row);
    const bool marksOn = m_doc.state(QStringLiteral("chkMarks")) != 0;
    const int state = r.kind == ControlKind::OptionPair ? index : r.count > 0 ? m_doc.state(row, index) : 0;
    if (const auto help = catalog().help(helpKey(r, index), state, marksOn))
        Q_EMIT helpRequested(help->text, help->msgType);
}

bool ControlBinder::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Enter:
        m_hovered = qobject_cast<QWidget *>(watched);
        showHelp(watched);
        break;
    case QEvent::Leave:
        if (m_hovered == watched)
            m_hovered = nullptr;
        break;
    case QEvent::FocusOut:
        if (auto *edit = qobject_cast<QLineEdit *>(watched); edit && edit->text().isEmpty()) {
            const auto [row, index] = m_where.value(watched);
            showValue(row, index);
        }
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
