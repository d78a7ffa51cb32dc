#pragma once

#include "QuickFindScreen.h"

/** The quick find of parts, narrowed to one part category when one is chosen. */
class PartQuickFindScreen : public QuickFindScreen
{
    Q_OBJECT

public:
    explicit PartQuickFindScreen(Session& session, QWidget* parent = nullptr);

    /** Shows the parts modally and answers the chosen PartID, or empty text. */
    static QString showPartQuickFind(Session& session, QWidget* parent = nullptr,
                                     const AddOpener& addOpener = {});

protected:
    QuickFind::Request request() const override;

private:
    QComboBox* m_category = nullptr;
};
