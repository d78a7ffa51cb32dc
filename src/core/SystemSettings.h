#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <utility>

class Session;

/**
 * The values of the system options screen: company data, the captions of
 * the user-defined equipment fields, the thresholds and the login switch,
 * read from and written to the shared options.
 */
class SystemSettings
{
public:
    static constexpr int UserFieldCount = 10;

    QString companyName;
    QString companyAddress1;
    QString companyAddress2;
    QString companyPhone;
    QString companyEmail;
    QString companyWebSite;
    QString serviceLateYellow;
    QString serviceLateRed;
    QString countReadingDelay;
    bool security = false;
    QStringList userFields = defaultUserFields();

    /** Reads every option the screen shows. */
    static SystemSettings load(Session& session);

    /**
     * Writes every option as a shared option in the order of optionRows().
     * When the login switch differs from the stored one, tells the user
     * that the change takes effect after a restart. True when it changed.
     */
    bool save(Session& session) const;

    /** The options to write, key and value, in their fixed order; blank captions replaced. */
    QList<std::pair<QString, QString>> optionRows() const;

    /** The caption a blank user-defined field falls back to: "User Field" and its number. */
    static QString defaultUserField(int number);
    static QStringList defaultUserFields();

    /** The phone mask's empty form. */
    static QString emptyPhone();
    /**
     * True when text is the empty phone, or has digits in positions 2 to 13
     * (counted from 1) other than the mask's literals at 5, 6 and 10.
     */
    static bool isValidPhone(const QString& text);

    /** A screen's default place and size in twips; a missing left or top is not written. */
    struct Geometry
    {
        QString form;
        int height = 0;
        int width = 0;
        int left = -1;
        int top = -1;
    };
    /** The default geometry of every screen. */
    static const QList<Geometry>& defaultGeometry();
    /** Writes the default geometry of every screen as this workstation's options. */
    static void writeDefaultGeometry(Session& session);

    /** A list the setup screen gives access to; listNumber 0 for a screen of its own. */
    struct Lookup
    {
        QString name;
        QString screen;
        int listNumber = 0;
    };
    /** Every list under "Available Lookups", in the order the buttons stand. */
    static const QList<Lookup>& lookups();

    static const QString SecurityChangedMessage;
    static const QString InvalidPhoneMessage;
};
