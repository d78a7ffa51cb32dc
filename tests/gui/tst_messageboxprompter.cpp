#include "MessageBoxPrompter.h"

#include <QAbstractButton>
#include <QApplication>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

Q_DECLARE_METATYPE(Prompter::Buttons)
Q_DECLARE_METATYPE(Prompter::Icon)
Q_DECLARE_METATYPE(Prompter::Answer)

namespace {

/** What the box looked like when it came up. */
struct SeenBox
{
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    QWidget* parent = nullptr;
};

/** Before a call that shows a message box: looks at it, then presses a button or Escape. */
void answerBox(SeenBox* seen, QMessageBox::StandardButton press)
{
    QTimer::singleShot(0, [seen, press] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box) {
            qFatal("Expected a message box");
        }
        *seen = {box->windowTitle(), box->text(), box->icon(), box->standardButtons(),
                 box->parentWidget()};
        if (press == QMessageBox::NoButton) {
            QTest::keyClick(box, Qt::Key_Escape);
        } else {
            QTest::mouseClick(box->button(press), Qt::LeftButton);
        }
    });
}

/**
 * Before a call that shows an input box: notes its title and default; with
 * the default selected, clears it or not, types over it, and accepts or cancels.
 */
void answerInput(QStringList* seen, bool clear, const QString& typed, bool accept)
{
    QTimer::singleShot(0, [=] {
        auto* dialog = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
        if (!dialog) {
            qFatal("Expected an input box");
        }
        *seen = {dialog->windowTitle(), dialog->textValue()};
        auto* edit = dialog->findChild<QLineEdit*>();
        edit->selectAll();
        if (clear) {
            QTest::keyClick(edit, Qt::Key_Backspace);
        }
        QTest::keyClicks(edit, typed);
        if (accept) {
            QTest::keyClick(edit, Qt::Key_Return);
        } else {
            dialog->reject();
        }
    });
}

} // namespace

class TestMessageBoxPrompter : public QObject
{
    Q_OBJECT

private slots:
    void buttonPressedIsTheAnswer_data()
    {
        QTest::addColumn<Prompter::Buttons>("buttons");
        QTest::addColumn<int>("press"); // NoButton: Escape
        QTest::addColumn<Prompter::Answer>("answer");
        QTest::addColumn<int>("shown");
        using B = Prompter::Buttons;
        using A = Prompter::Answer;
        const int ok = QMessageBox::Ok;
        const int yesNo = QMessageBox::Yes | QMessageBox::No;
        const int yesNoCancel = yesNo | QMessageBox::Cancel;
        const auto row = [](const char* name, B buttons, int press, A answer, int shown) {
            QTest::newRow(name) << buttons << press << answer << shown;
        };
        row("ok, escape", B::Ok, QMessageBox::NoButton, A::Ok, ok);
        row("yes", B::YesNo, QMessageBox::Yes, A::Yes, yesNo);
        row("yes/no, escape is no", B::YesNo, QMessageBox::NoButton, A::No, yesNo);
        row("3: cancel", B::YesNoCancel, QMessageBox::Cancel, A::Cancel, yesNoCancel);
        row("3: escape is cancel", B::YesNoCancel, QMessageBox::NoButton, A::Cancel, yesNoCancel);
        row("ok/cancel: cancel", B::OkCancel, QMessageBox::Cancel, A::Cancel,
            ok | QMessageBox::Cancel);
    }

    void buttonPressedIsTheAnswer()
    {
        QFETCH(Prompter::Buttons, buttons);
        QFETCH(int, press);
        QFETCH(Prompter::Answer, answer);
        QFETCH(int, shown);
        MessageBoxPrompter prompter;
        SeenBox seen;
        answerBox(&seen, QMessageBox::StandardButton(press));
        QCOMPARE(
            prompter.message(QStringLiteral("Save changes?"), buttons, Prompter::Icon::Question),
            answer);
        QCOMPARE(int(seen.buttons), shown);
        QCOMPARE(seen.text, QStringLiteral("Save changes?"));
    }

    void titleIconAndParent_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<Prompter::Icon>("icon");
        QTest::addColumn<QString>("shownTitle");
        QTest::addColumn<int>("shownIcon");
        const QString program = QStringLiteral("Korvelle");
        using I = Prompter::Icon;
        QTest::newRow("exclamation")
            << QString() << I::Exclamation << program << int(QMessageBox::Warning);
        QTest::newRow("critical") << QString() << I::Critical << program
                                  << int(QMessageBox::Critical);
        QTest::newRow("none, own title") << QStringLiteral("Backup") << I::None
                                         << QStringLiteral("Backup") << int(QMessageBox::NoIcon);
    }

    void titleIconAndParent()
    {
        QFETCH(QString, title);
        QFETCH(Prompter::Icon, icon);
        QFETCH(QString, shownTitle);
        QFETCH(int, shownIcon);
        QWidget window;
        window.show();
        MessageBoxPrompter prompter(&window);
        SeenBox seen;
        answerBox(&seen, QMessageBox::Ok);
        prompter.message(QStringLiteral("Done."), Prompter::Buttons::Ok, icon, title);
        QCOMPARE(seen.title, shownTitle);
        QCOMPARE(int(seen.icon), shownIcon);
        QCOMPARE(seen.parent, &window);
    }

    void inputBox_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("defaultText");
        QTest::addColumn<bool>("clear");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("accept");
        QTest::addColumn<std::optional<QString>>("result");
        using Text = std::optional<QString>;
        QTest::newRow("typed over default")
            << QString() << QStringLiteral("Old") << false << QStringLiteral("New") << true
            << Text(QStringLiteral("New"));
        QTest::newRow("default kept, own title")
            << QStringLiteral("Rename") << QStringLiteral("Old name") << false << QString() << true
            << Text(QStringLiteral("Old name"));
        QTest::newRow("cleared") << QString() << QStringLiteral("x") << true << QString() << true
                                 << Text(QString());
        QTest::newRow("cancelled") << QString() << QStringLiteral("x") << false
                                   << QStringLiteral("typed") << false << Text();
    }

    void inputBox()
    {
        QFETCH(QString, title);
        QFETCH(QString, defaultText);
        QFETCH(bool, clear);
        QFETCH(QString, typed);
        QFETCH(bool, accept);
        QFETCH(std::optional<QString>, result);
        MessageBoxPrompter prompter;
        QStringList seen;
        answerInput(&seen, clear, typed, accept);
        QVERIFY(prompter.input(QStringLiteral("Enter the name"), title, defaultText) == result);
        QCOMPARE(seen,
                 QStringList({title.isEmpty() ? QStringLiteral("Korvelle") : title, defaultText}));
    }
};

QTEST_MAIN(TestMessageBoxPrompter)
#include "tst_messageboxprompter.moc"
