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
};

/** Before a call that shows a message box: looks at it, then presses a button or Escape. */
void answerBox(SeenBox* seen, QMessageBox::StandardButton press)
{
    QTimer::singleShot(0, [seen, press] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box) {
            qFatal("Expected a message box");
        }
        *seen = {box->windowTitle(), box->text(), box->icon(), box->standardButtons()};
        if (press == QMessageBox::NoButton) {
            QTest::keyClick(box, Qt::Key_Escape);
        } else {
            QTest::mouseClick(box->button(press), Qt::LeftButton);
        }
    });
}

/**
 * Before a call that shows an input box: notes its texts; with the default
 * selected, clears it or not, types over it, and accepts or cancels.
 */
void answerInput(QString* seenTitle, QString* seenDefault, bool clear, const QString& typed,
                 bool accept)
{
    QTimer::singleShot(0, [=] {
        auto* dialog = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
        if (!dialog) {
            qFatal("Expected an input box");
        }
        *seenTitle = dialog->windowTitle();
        *seenDefault = dialog->textValue();
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
        QTest::addColumn<int>("press");
        QTest::addColumn<Prompter::Answer>("answer");
        QTest::addColumn<int>("shown");
        using B = Prompter::Buttons;
        using A = Prompter::Answer;
        const int yesNo = QMessageBox::Yes | QMessageBox::No;
        const int yesNoCancel = yesNo | QMessageBox::Cancel;
        QTest::newRow("ok") << B::Ok << int(QMessageBox::Ok) << A::Ok << int(QMessageBox::Ok);
        QTest::newRow("ok, escape")
            << B::Ok << int(QMessageBox::NoButton) << A::Ok << int(QMessageBox::Ok);
        QTest::newRow("yes") << B::YesNo << int(QMessageBox::Yes) << A::Yes << yesNo;
        QTest::newRow("no") << B::YesNo << int(QMessageBox::No) << A::No << yesNo;
        QTest::newRow("yes/no, escape is no")
            << B::YesNo << int(QMessageBox::NoButton) << A::No << yesNo;
        QTest::newRow("3: yes") << B::YesNoCancel << int(QMessageBox::Yes) << A::Yes << yesNoCancel;
        QTest::newRow("3: no") << B::YesNoCancel << int(QMessageBox::No) << A::No << yesNoCancel;
        QTest::newRow("3: cancel")
            << B::YesNoCancel << int(QMessageBox::Cancel) << A::Cancel << yesNoCancel;
        QTest::newRow("3: escape is cancel")
            << B::YesNoCancel << int(QMessageBox::NoButton) << A::Cancel << yesNoCancel;
        QTest::newRow("ok/cancel: cancel") << B::OkCancel << int(QMessageBox::Cancel) << A::Cancel
                                           << int(QMessageBox::Ok | QMessageBox::Cancel);
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
        const Prompter::Answer given =
            prompter.message(QStringLiteral("Save changes?"), buttons, Prompter::Icon::Question);
        QCOMPARE(given, answer);
        QCOMPARE(int(seen.buttons), shown);
        QCOMPARE(seen.text, QStringLiteral("Save changes?"));
    }

    void titleAndIcon_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<Prompter::Icon>("icon");
        QTest::addColumn<QString>("shownTitle");
        QTest::addColumn<int>("shownIcon");
        const QString program = QStringLiteral("Korvelle");
        QTest::newRow("information")
            << QString() << Prompter::Icon::Information << program << int(QMessageBox::Information);
        QTest::newRow("question") << QString() << Prompter::Icon::Question << program
                                  << int(QMessageBox::Question);
        QTest::newRow("exclamation")
            << QString() << Prompter::Icon::Exclamation << program << int(QMessageBox::Warning);
        QTest::newRow("critical") << QString() << Prompter::Icon::Critical << program
                                  << int(QMessageBox::Critical);
        QTest::newRow("none, own title") << QStringLiteral("Backup") << Prompter::Icon::None
                                         << QStringLiteral("Backup") << int(QMessageBox::NoIcon);
    }

    void titleAndIcon()
    {
        QFETCH(QString, title);
        QFETCH(Prompter::Icon, icon);
        QFETCH(QString, shownTitle);
        QFETCH(int, shownIcon);
        MessageBoxPrompter prompter;
        SeenBox seen;
        answerBox(&seen, QMessageBox::Ok);
        prompter.message(QStringLiteral("Done."), Prompter::Buttons::Ok, icon, title);
        QCOMPARE(seen.title, shownTitle);
        QCOMPARE(int(seen.icon), shownIcon);
    }

    void informAndAskYesNoGoThroughTheBox()
    {
        MessageBoxPrompter prompter;
        SeenBox seen;
        answerBox(&seen, QMessageBox::Yes);
        QVERIFY(prompter.askYesNo(QStringLiteral("Are you sure you want to Delete this record?")));
        QCOMPARE(seen.icon, QMessageBox::Question);
        answerBox(&seen, QMessageBox::Ok);
        prompter.inform(QStringLiteral("No updates available"));
        QCOMPARE(seen.icon, QMessageBox::Information);
        QCOMPARE(seen.title, QStringLiteral("Korvelle"));
    }

    void inputBox_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("defaultText");
        QTest::addColumn<bool>("clear");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("accept");
        QTest::addColumn<QString>("shownTitle");
        QTest::addColumn<std::optional<QString>>("result");
        const QString program = QStringLiteral("Korvelle");
        using Text = std::optional<QString>;
        QTest::newRow("typed") << QString() << QString() << false << QStringLiteral("Crew 7")
                               << true << program << Text(QStringLiteral("Crew 7"));
        QTest::newRow("typed over default")
            << QString() << QStringLiteral("Old") << false << QStringLiteral("New") << true
            << program << Text(QStringLiteral("New"));
        QTest::newRow("default kept")
            << QStringLiteral("Rename") << QStringLiteral("Old name") << false << QString() << true
            << QStringLiteral("Rename") << Text(QStringLiteral("Old name"));
        QTest::newRow("cleared") << QString() << QStringLiteral("x") << true << QString() << true
                                 << program << Text(QString());
        QTest::newRow("cancelled") << QString() << QStringLiteral("x") << false
                                   << QStringLiteral("typed") << false << program << Text();
    }

    void inputBox()
    {
        QFETCH(QString, title);
        QFETCH(QString, defaultText);
        QFETCH(bool, clear);
        QFETCH(QString, typed);
        QFETCH(bool, accept);
        QFETCH(QString, shownTitle);
        QFETCH(std::optional<QString>, result);
        MessageBoxPrompter prompter;
        QString seenTitle;
        QString seenDefault;
        answerInput(&seenTitle, &seenDefault, clear, typed, accept);
        const std::optional<QString> given =
            prompter.input(QStringLiteral("Enter the name"), title, defaultText);
        QCOMPARE(seenTitle, shownTitle);
        QCOMPARE(seenDefault, defaultText);
        QVERIFY(given == result);
    }

    void boxStandsOverTheGivenParent()
    {
        QWidget window;
        window.show();
        MessageBoxPrompter prompter(&window);
        QWidget* parent = nullptr;
        QTimer::singleShot(0, [&parent] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box) {
                qFatal("Expected a message box");
            }
            parent = box->parentWidget();
            box->accept();
        });
        prompter.inform(QStringLiteral("Saved."));
        QCOMPARE(parent, &window);
    }
};

QTEST_MAIN(TestMessageBoxPrompter)
#include "tst_messageboxprompter.moc"
