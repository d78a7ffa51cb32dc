#include "MessageBoxPrompter.h"
#include "ScreenTest.h"

#include <QAbstractButton>
#include <QInputDialog>
#include <QMessageBox>

using namespace Qt::StringLiterals;

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
        QTest::addColumn<Prompter::Icon>("icon");
        QTest::addColumn<int>("shownIcon");
        QTest::addColumn<QString>("title"); // empty: the program's name
        using B = Prompter::Buttons;
        using A = Prompter::Answer;
        using I = Prompter::Icon;
        const int ok = QMessageBox::Ok;
        const int yesNo = QMessageBox::Yes | QMessageBox::No;
        const int cancel = QMessageBox::Cancel;
        const int escape = QMessageBox::NoButton;
        const auto row = [](const char* name, B buttons, int press, A answer, int shown, I icon,
                            int shownIcon, const QString& title = {}) {
            QTest::newRow(name) << buttons << press << answer << shown << icon << shownIcon
                                << title;
        };
        row("ok, escape", B::Ok, escape, A::Ok, ok, I::Exclamation, QMessageBox::Warning);
        row("yes", B::YesNo, QMessageBox::Yes, A::Yes, yesNo, I::Question, QMessageBox::Question);
        row("yes/no, escape is no", B::YesNo, escape, A::No, yesNo, I::Critical,
            QMessageBox::Critical);
        row("3: escape is cancel", B::YesNoCancel, escape, A::Cancel, yesNo | cancel, I::None,
            QMessageBox::NoIcon, u"Backup"_s);
        row("ok/cancel: cancel", B::OkCancel, cancel, A::Cancel, ok | cancel, I::Information,
            QMessageBox::Information);
    }

    void buttonPressedIsTheAnswer()
    {
        QFETCH(Prompter::Buttons, buttons);
        QFETCH(int, press);
        QFETCH(Prompter::Answer, answer);
        QFETCH(int, shown);
        QFETCH(Prompter::Icon, icon);
        QFETCH(int, shownIcon);
        QFETCH(QString, title);
        QWidget window;
        window.show();
        MessageBoxPrompter prompter(&window);
        QStringList seen;
        onModal<QMessageBox>("", [&](QMessageBox* box) {
            seen = QStringList{box->windowTitle(), box->text()};
            if (press == QMessageBox::NoButton) {
                QTest::keyClick(box, Qt::Key_Escape);
            } else {
                QTest::mouseClick(box->button(QMessageBox::StandardButton(press)), Qt::LeftButton);
            }
            QCOMPARE(int(box->standardButtons()), shown);
            QCOMPARE(int(box->icon()), shownIcon);
            QCOMPARE(box->parentWidget(), &window);
        });
        QCOMPARE(prompter.message(u"Save changes?"_s, buttons, icon, title), answer);
        QCOMPARE(seen, QStringList({title.isEmpty() ? u"Korvelle"_s : title, u"Save changes?"_s}));
    }

    void inputBox_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("defaultText");
        QTest::addColumn<QString>("typed"); // over the selected default; "\b" erases it
        QTest::addColumn<bool>("accept");
        QTest::addColumn<std::optional<QString>>("result");
        const auto row = [](const char* name, const char* title, const char* defaultText,
                            const char* typed, bool accept, std::optional<QString> result) {
            QTest::newRow(name) << QString::fromUtf8(title) << QString::fromUtf8(defaultText)
                                << QString::fromUtf8(typed) << accept << result;
        };
        row("typed over default", "", "Old", "New", true, u"New"_s);
        row("default kept, own title", "Rename", "Old name", "", true, u"Old name"_s);
        row("cleared", "", "x", "\b", true, QString());
        row("cancelled", "", "x", "typed", false, std::nullopt);
    }

    void inputBox()
    {
        QFETCH(QString, title);
        QFETCH(QString, defaultText);
        QFETCH(QString, typed);
        QFETCH(bool, accept);
        QFETCH(std::optional<QString>, result);
        MessageBoxPrompter prompter;
        QStringList seen;
        onModal<QInputDialog>("", [&](QInputDialog* dialog) {
            seen = QStringList{dialog->windowTitle(), dialog->textValue()};
            auto* edit = dialog->findChild<QLineEdit*>();
            edit->selectAll();
            QTest::keyClicks(edit, typed);
            if (accept) {
                QTest::keyClick(edit, Qt::Key_Return);
            } else {
                dialog->reject();
            }
        });
        QVERIFY(prompter.input(u"Enter the name"_s, title, defaultText) == result);
        QCOMPARE(seen, QStringList({title.isEmpty() ? u"Korvelle"_s : title, defaultText}));
    }
};

QTEST_MAIN(TestMessageBoxPrompter)
#include "tst_messageboxprompter.moc"
