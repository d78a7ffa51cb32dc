#pragma once

#include "RecordGrid.h"
#include "ScriptedPrompter.h"

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>
#include <functional>
#include <type_traits>

// What the screen tests share: controls found by name and used as a user does,
// modal windows answered from inside their own event loop, and small files.

/** The control named name on screen; a missing one ends the run, naming it. */
template <class T = QLineEdit> T* child(const QWidget& screen, const char* name)
{
    T* widget = screen.findChild<T*>(QString::fromLatin1(name));
    if (!widget) {
        qFatal("No %s on %s", name, qPrintable(screen.objectName()));
    }
    return widget;
}

inline QString text(const QWidget& screen, const char* name)
{
    return child(screen, name)->text();
}

inline void click(const QWidget& screen, const char* button)
{
    QTest::mouseClick(child<QPushButton>(screen, button), Qt::LeftButton);
}

/**
 * Arms check to run on the next modal window, which must be a T named name;
 * call it just before the call that shows the window.
 */
template <class T = QWidget>
void onModal(const char* name, std::function<void(std::type_identity_t<T>*)> check)
{
    QTimer::singleShot(0, [name, check] {
        auto* modal = qobject_cast<T*>(QApplication::activeModalWidget());
        if (!modal || modal->objectName() != QLatin1String(name)) {
            qFatal("%s is not the modal window", name);
        }
        check(modal);
    });
}

/** "a|b|c" as a list, for compact tables. */
inline QStringList split(const char* text)
{
    return QString::fromUtf8(text).split(u'|', Qt::SkipEmptyParts);
}

/**
 * User steps on a record screen, separated by '|': "cmdAdd" clicks a button,
 * "txtX+text" types at the end of a field, "txtX=text" erases it first, "row:2"
 * clicks a row of the grid named grid, "Yes" and "No" answer the next question,
 * "close" is the window's close box and "escape" the key.
 */
inline void perform(QWidget& screen, ScriptedPrompter& prompter, const QString& steps,
                    const char* grid)
{
    for (const QString& step : steps.split(u'|', Qt::SkipEmptyParts)) {
        const qsizetype at = step.indexOf(QRegularExpression(QStringLiteral("[+=]")));
        const QByteArray name = step.left(at).toLatin1();
        if (at > 0) {
            QLineEdit* edit = child(screen, name.constData());
            QTest::keyClick(edit, Qt::Key_End);
            for (qsizetype i = step[at] == u'=' ? edit->text().size() : 0; i > 0; --i) {
                QTest::keyClick(edit, Qt::Key_Backspace);
            }
            QTest::keyClicks(edit, step.mid(at + 1));
        } else if (step.startsWith(QLatin1String("cmd"))) {
            click(screen, name.constData());
        } else if (step.startsWith(QLatin1String("row:"))) {
            auto* rows = child<RecordGrid>(screen, grid);
            const QRect cell = rows->visualRect(rows->model()->index(step.mid(4).toInt(), 1));
            QTest::mouseClick(rows->viewport(), Qt::LeftButton, {}, cell.center());
        } else if (step == QLatin1String("Yes") || step == QLatin1String("No")) {
            prompter.queueAnswer(step == QLatin1String("Yes") ? Prompter::Answer::Yes
                                                              : Prompter::Answer::No);
        } else if (step == QLatin1String("close")) {
            screen.close();
        } else if (step == QLatin1String("escape")) {
            QTest::keyClick(&screen, Qt::Key_Escape);
        } else {
            qFatal("Unknown step %s", qPrintable(step));
        }
    }
}

inline bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(bytes) == bytes.size();
}

inline QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}
