#pragma once

#include <QLockFile>
#include <QString>
#include <functional>
#include <memory>

class Session;

/**
 * The start of a desktop run, in its fixed order: look for a newer client,
 * refuse a second copy, back the data file up, open the data, log in and
 * load the rights. Each refusal tells the user and asks the caller to end.
 */
class Startup
{
public:
    enum class Outcome { Continue, Exit };

    explicit Startup(Session& session);
    ~Startup();

    /** Starts a program (the installer); replaced in tests. */
    void setProgramLauncher(std::function<bool(const QString&)> launcher);
    /** Asks for a login when logins are on; false ends the start. Without one the start
     *  goes on with no user, as with logins off. */
    void setLogin(std::function<bool(Session&)> login);

    /** Looks for a newer client in the update folder; Exit once its installer has started.
     *  A missing update.txt or an installer that does not start is reported and the start
     *  goes on. */
    Outcome checkForUpdate();
    /** From the single-instance test to the user's rights. */
    Outcome connectToDb();
    /** Copies the data file to the backup of this version; false (with a message) on failure. */
    bool backupDb();
    /** The whole start, in order; the screens come after. */
    Outcome run();

    /** The name of the backup copy: "Korvelle" + the version without dots + ".db". */
    static QString backupFileName(const QString& version);
    /** The lock that tells whether this installation is already open on this machine. */
    static QString lockFilePath(const QString& home);

private:
    void reportConnectFailure(qint64 number, const QString& text);
    void setUserRole();

    Session& m_session;
    std::unique_ptr<QLockFile> m_lock;
    std::function<bool(const QString&)> m_launcher;
    std::function<bool(Session&)> m_login;
};
