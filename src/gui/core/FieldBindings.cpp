#include "FieldBindings.h"

#include "DataHelpers.h"
#include "DateBox.h"
#include "LookupCombo.h"
#include "MessageTexts.h"
#include "SqlValue.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QSqlRecord>

namespace {

template <class... Ts> struct Overloaded : Ts...
{
    using Ts::operator()...;
};

/** The text a field holds, for the checks; empty for kinds of field that hold none. */
QString fieldText(const QWidget* widget)
{
    if (auto* line = qobject_cast<const QLineEdit*>(widget)) {
        return line->text();
    }
    if (auto* plain = qobject_cast<const QPlainTextEdit*>(widget)) {
        return plain->toPlainText();
    }
    if (auto* combo = qobject_cast<const QComboBox*>(widget)) {
        return LookupCombo::currentText(combo);
    }
    if (auto* date = qobject_cast<const DateBox*>(widget)) {
        return date->isEmpty() ? QString() : date->text();
    }
    return QStringLiteral("-");
}

void setFieldText(QWidget* widget, const QString& text)
{
    if (auto* line = qobject_cast<QLineEdit*>(widget)) {
        line->setText(text);
    } else if (auto* plain = qobject_cast<QPlainTextEdit*>(widget)) {
        plain->setPlainText(text);
    }
}

bool isNumeric(const FieldBindings::Member& member)
{
    return std::holds_alternative<qint64*>(member) || std::holds_alternative<int*>(member) ||
           std::holds_alternative<double*>(member);
}

bool isBound(const FieldBindings::Binding& b)
{
    return !std::holds_alternative<std::monostate>(b.member);
}

/** True when text suits the member: any text for text, a number (or nothing) for numbers. */
bool isNumberText(const FieldBindings::Member& member, const QString& text)
{
    if (!isNumeric(member) || text.isEmpty()) {
        return true;
    }
    bool ok = false;
    if (std::holds_alternative<double*>(member)) {
        text.toDouble(&ok);
    } else {
        text.toLongLong(&ok);
    }
    return ok;
}

QString numberText(const QVariant& value, bool money)
{
    if (value.isNull() || value.toString().trimmed().isEmpty()) {
        return QString();
    }
    return money ? QString::number(value.toDouble(), 'f', 2) : value.toString();
}

/** Shows value in widget; false when a list has no item for it. */
bool show(const FieldBindings::Binding& b, const QVariant& value)
{
    QWidget* w = b.widget;
    if (auto* combo = qobject_cast<QComboBox*>(w)) {
        return std::holds_alternative<QString*>(b.member)
                   ? LookupCombo::selectText(combo, DataHelpers::replaceNull(value).toString())
                   : LookupCombo::selectId(combo, value);
    }
    if (auto* date = qobject_cast<DateBox*>(w)) {
        date->setValue(SqlValue::toDate(value));
    } else if (auto* box = qobject_cast<QAbstractButton*>(w)) {
        box->setChecked(SqlValue::toYesNo(value));
    } else if (auto* spin = qobject_cast<QSpinBox*>(w)) {
        spin->setValue(value.toInt());
    } else if (auto* real = qobject_cast<QDoubleSpinBox*>(w)) {
        real->setValue(value.toDouble());
    } else if (isNumeric(b.member)) {
        setFieldText(w, numberText(value, b.checks & FieldBindings::Money));
    } else {
        setFieldText(w, DataHelpers::replaceNull(value).toString());
    }
    return true;
}

void empty(QWidget* w)
{
    if (auto* combo = qobject_cast<QComboBox*>(w)) {
        LookupCombo::selectId(combo, 0);
    } else if (auto* date = qobject_cast<DateBox*>(w)) {
        date->setValue(QDate());
    } else if (auto* box = qobject_cast<QAbstractButton*>(w)) {
        box->setChecked(false);
    } else if (auto* spin = qobject_cast<QSpinBox*>(w)) {
        spin->setValue(spin->minimum());
    } else if (auto* real = qobject_cast<QDoubleSpinBox*>(w)) {
        real->setValue(real->minimum());
    } else {
        setFieldText(w, QString());
    }
}

double numberOf(const QWidget* w)
{
    if (auto* spin = qobject_cast<const QSpinBox*>(w)) {
        return spin->value();
    }
    if (auto* real = qobject_cast<const QDoubleSpinBox*>(w)) {
        return real->value();
    }
    if (auto* combo = qobject_cast<const QComboBox*>(w)) {
        return double(LookupCombo::currentId(combo));
    }
    return fieldText(w).trimmed().toDouble();
}

void copyInto(const FieldBindings::Binding& b)
{
    const QWidget* w = b.widget;
    std::visit(Overloaded{
                   [](std::monostate) {},
                   [w](QString* text) { *text = fieldText(w).trimmed(); },
                   [w](qint64* whole) {
                       auto* combo = qobject_cast<const QComboBox*>(w);
                       *whole = combo ? LookupCombo::currentId(combo)
                                      : fieldText(w).trimmed().toLongLong();
                   },
                   [w](int* whole) { *whole = int(numberOf(w)); },
                   [w](double* number) { *number = numberOf(w); },
                   [w](QDate* day) { *day = qobject_cast<const DateBox*>(w)->value(); },
                   [w](bool* on) { *on = qobject_cast<const QAbstractButton*>(w)->isChecked(); },
               },
               b.member);
}

} // namespace

void FieldBindings::add(QWidget* widget, const QString& column, Member member,
                        const QString& caption, int checks)
{
    Q_ASSERT(!std::holds_alternative<QDate*>(member) || qobject_cast<DateBox*>(widget));
    Q_ASSERT(!std::holds_alternative<bool*>(member) || qobject_cast<QAbstractButton*>(widget));
    m_bindings.append({widget, column, member, caption, checks});
}

QList<QWidget*> FieldBindings::widgets() const
{
    QList<QWidget*> result;
    for (const Binding& b : m_bindings) {
        result.append(b.widget);
    }
    return result;
}

void FieldBindings::clear() const
{
    for (const Binding& b : m_bindings) {
        if (isBound(b)) {
            empty(b.widget);
        }
    }
}

bool FieldBindings::display(const QSqlRecord& row) const
{
    bool allFound = true;
    for (const Binding& b : m_bindings) {
        if (isBound(b)) {
            allFound = show(b, row.value(b.column)) && allFound;
        }
    }
    return allFound;
}

std::optional<std::pair<QWidget*, QString>> FieldBindings::firstFailure() const
{
    for (const Binding& b : m_bindings) {
        const QString text = fieldText(b.widget).trimmed();
        if ((b.checks & Required) && text.isEmpty()) {
            return std::pair(b.widget, MessageTexts::notBlank(b.caption));
        }
        if (qobject_cast<const QLineEdit*>(b.widget) && !isNumberText(b.member, text)) {
            return std::pair(b.widget, MessageTexts::numeric(b.caption));
        }
    }
    return std::nullopt;
}

void FieldBindings::collect() const
{
    for (const Binding& b : m_bindings) {
        copyInto(b);
    }
}
