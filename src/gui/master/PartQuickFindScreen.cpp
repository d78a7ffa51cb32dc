#include "PartQuickFindScreen.h"

#include "LookupCombo.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>

namespace {

constexpr qint64 PartCategoryList = 10;

} // namespace

PartQuickFindScreen::PartQuickFindScreen(Session& session, QWidget* parent)
    : QuickFindScreen(session, QStringLiteral("tblPart"), QStringLiteral("PartID"),
                      QStringLiteral("Part Number"), QStringLiteral("frmPartQuickFind"), {}, parent)
{
    setObjectName(QStringLiteral("frmPartQuickFind"));
    m_category = new QComboBox(this);
    m_category->setObjectName(QStringLiteral("cboCategory"));
    LookupCombo::loadItemWithId(m_category,
                                DataHelpers::indicatorInfo(session, PartCategoryList, false, true),
                                QStringLiteral("ItemID"), QStringLiteral("ItemName"), true);
    filterRow()->addWidget(new QLabel(QStringLiteral("Category"), this), 2, 0);
    filterRow()->addWidget(m_category, 2, 1);
    connect(m_category, &QComboBox::currentIndexChanged, this, &PartQuickFindScreen::reload);
}

QuickFind::Request PartQuickFindScreen::request() const
{
    return {QStringLiteral("PartID"), {}, LookupCombo::currentId(m_category)};
}

QString PartQuickFindScreen::showPartQuickFind(Session& session, QWidget* parent,
                                               const AddOpener& addOpener)
{
    PartQuickFindScreen screen(session, parent);
    screen.setAddOpener(addOpener);
    // Not offered on this screen, should a data file list them.
    screen.start({QStringLiteral("PartS"), QStringLiteral("Inactive")});
    screen.exec();
    return screen.chosenKey();
}
