#pragma once

#include <QDateEdit>

/**
 * A date field that may be empty, as many dates of a record are: the empty
 * box stands for the empty date (NULL in the data). Delete or Backspace
 * over the whole date empties it; typing or picking a day fills it again.
 */
class DateBox : public QDateEdit
{
    Q_OBJECT

public:
    /** Dates show as the office types them. */
    static inline const QString DisplayFormat = QStringLiteral("MM/dd/yyyy");

    explicit DateBox(QWidget* parent = nullptr);

    /** The date shown, or the empty date when the box is empty. */
    QDate value() const;
    /** Shows day, or empties the box for the empty date. */
    void setValue(const QDate& day);
    bool isEmpty() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    static QDate emptyMark();
};
