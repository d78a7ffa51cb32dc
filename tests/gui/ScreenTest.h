#pragma once

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
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
