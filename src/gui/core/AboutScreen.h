#pragma once

#include <QDialog>

class Session;

/** "About Korvelle": the program's name, its version and where its data lies. */
class AboutScreen : public QDialog
{
    Q_OBJECT

public:
    AboutScreen(Session& session, QWidget* parent = nullptr);

    /** Shows the screen modally over parent. */
    static void showAbout(Session& session, QWidget* parent);
};
