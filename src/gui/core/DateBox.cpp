#include "DateBox.h"

#include <QKeyEvent>
#include <QLineEdit>

DateBox::DateBox(QWidget* parent) : QDateEdit(parent)
{
    setDisplayFormat(DisplayFormat);
    setCalendarPopup(true);
    // The lowest date stands for "no date" and shows as a blank.
    setMinimumDate(emptyMark());
    setSpecialValueText(QStringLiteral(" "));
    setValue(QDate());
}

QDate DateBox::value() const
{
    return isEmpty() ? QDate() : date();
}

void DateBox::setValue(const QDate& day)
{
    setDate(day.isValid() && day > emptyMark() ? day : emptyMark());
}

bool DateBox::isEmpty() const
{
    return date() == emptyMark();
}

void DateBox::keyPressEvent(QKeyEvent* event)
{
    const bool erasing = event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace;
    if (erasing && (isEmpty() || lineEdit()->selectedText() == lineEdit()->text())) {
        setValue(QDate());
        return;
    }
    if (isEmpty() && !event->text().isEmpty() && event->text().at(0).isDigit()) {
        // The first digit typed starts a date of this year rather than of the empty mark.
        setDate(QDate::currentDate());
        selectAll();
    }
    QDateEdit::keyPressEvent(event);
}

QDate DateBox::emptyMark()
{
    return QDate(1752, 9, 14);
}
