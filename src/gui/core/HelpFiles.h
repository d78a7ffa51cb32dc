#pragma once

#include <QString>

class Installation;
class Session;

/**
 * The program's own documents in an installation: the HTML manual that
 * "Korvelle Help" shows and the quick start manual. The program carries
 * both and puts them into an installation that lacks them.
 */
namespace HelpFiles {

/** The manual's file name, in the folder of the "SYSFOLDER" value. */
QString manualName();
/** The quick start manual's file name, in the installation folder. */
QString quickStartName();

/** The manual: the "SYSFOLDER" value + "Korvelle.html"; the installation's doc/ without one. */
QString manualPath(const Session& session);
/** The quick start manual: the installation folder + "QuickStart.pdf". */
QString quickStartPath(const Installation& installation);

/**
 * Copies the manual and the quick start manual from bundleFolder where the
 * installation lacks them. A file already there is never replaced. False
 * with the reason when one could not be copied.
 */
bool installMissing(const Session& session, const QString& bundleFolder, QString* error);

} // namespace HelpFiles
