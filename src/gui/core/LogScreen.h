#pragma once

#include <QDialog>

class QPlainTextEdit;
class Session;

/**
 * The exchange log screen (frmTandrill_Log): the sync application's log
 * file, whole and read-only; empty when there is no log yet.
 */
class LogScreen : public QDialog
{
    Q_OBJECT

public:
    explicit LogScreen(Session& session, QWidget* parent = nullptr);

protected:
    void done(int result) override;

private:
    void loadLog();

    Session& m_session;
    QPlainTextEdit* m_text = nullptr;
};
