#pragma once

#include <QDialog>
#include <QHash>
#include <QList>
#include <functional>

class QCheckBox;
class QHBoxLayout;
class QLineEdit;
class QPushButton;
class QTabWidget;
class Session;

/**
 * The system options screen (frmSetup): company data, captions of the
 * user-defined equipment fields, access to every lookup list, the
 * thresholds and the login switch. While a change is pending the screen
 * can only be left by saving or cancelling the change.
 */
class SetupScreen : public QDialog
{
    Q_OBJECT

public:
    using LookupOpener = std::function<void(QWidget* parent)>;
    using IndicatorOpener = std::function<void(QWidget* parent, int listNumber)>;

    explicit SetupScreen(Session& session, QWidget* parent = nullptr);

    /**
     * Gives the button of one lookup ("Site", "Cost Center", "Country", ...)
     * the screen it opens. A button without an opener stays disabled.
     */
    void setLookupOpener(const QString& lookupName, LookupOpener opener);
    /** Opens every fixed list of tblIndicator that has no opener of its own, by list number. */
    void setIndicatorOpener(IndicatorOpener opener);

    bool isModified() const { return m_modified; }

public slots:
    /** Leaves without saving; refused while a change is pending. */
    void reject() override;

protected:
    void done(int result) override;

private:
    void buildGeneralTab();
    void buildUserFieldsTab();
    void buildLookupsTab();
    void buildSettingsTab();
    QHBoxLayout* buildButtons();

    void loadValues();
    bool saveChanges();
    void setModified(bool modified);
    void updateLookupButtons();
    void openLookup(const QString& name, int listNumber);
    bool checkPhone();
    void restoreBlankCaption(int index);
    void markModified();

    Session& m_session;
    bool m_modified = false;
    bool m_loading = false;

    QTabWidget* m_tabs = nullptr;
    QLineEdit* m_companyName = nullptr;
    QLineEdit* m_address1 = nullptr;
    QLineEdit* m_address2 = nullptr;
    QLineEdit* m_phone = nullptr;
    QLineEdit* m_email = nullptr;
    QLineEdit* m_webSite = nullptr;
    QList<QLineEdit*> m_userFields;
    QCheckBox* m_security = nullptr;
    QLineEdit* m_lateYellow = nullptr;
    QLineEdit* m_lateRed = nullptr;
    QLineEdit* m_readingDelay = nullptr;
    QPushButton* m_defaultSize = nullptr;
    QPushButton* m_ok = nullptr;
    QPushButton* m_apply = nullptr;
    QPushButton* m_cancel = nullptr;
    QPushButton* m_exit = nullptr;

    QHash<QString, QPushButton*> m_lookupButtons;
    QHash<QString, LookupOpener> m_lookupOpeners;
    IndicatorOpener m_indicatorOpener;
};
