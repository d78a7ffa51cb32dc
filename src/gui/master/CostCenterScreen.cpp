#include "CostCenterScreen.h"

#include "FormPlacement.h"
#include "RecordGrid.h"
#include "ScreenFields.h"

#include <QDoubleValidator>
#include <QFormLayout>

namespace {

const QString CostCenterIdField = QStringLiteral("CostCenterID");
const QString DescriptionField = QStringLiteral("Description");
const QString BudgetField = QStringLiteral("Budget");

} // namespace

CostCenterScreen::CostCenterScreen(Session& session, QWidget* parent)
    : NamedRecordScreen(session, QStringLiteral("frmCostCenter"), QStringLiteral("tblCostCenter"),
                        CostCenterIdField, parent),
      m_manager(session)
{
    using namespace ScreenFields;
    setWindowTitle(QStringLiteral("Cost Center"));
    QLineEdit* description = lineEdit(this, "txtDescription", 100);
    QLineEdit* budget = lineEdit(this, "txtBudget", 20);
    auto* realNumber = new QDoubleValidator(budget);
    realNumber->setLocale(QLocale::c());
    realNumber->setNotation(QDoubleValidator::StandardNotation);
    budget->setValidator(realNumber);
    auto* fields = new QFormLayout;
    fields->addRow(QStringLiteral("&Description"), description);
    fields->addRow(QStringLiteral("&Budget"), budget);

    auto* grid = new RecordGrid(this);
    grid->setObjectName(QStringLiteral("grdCostCenter"));
    grid->setFields({{CostCenterIdField, CostCenterIdField},
                     {DescriptionField, QStringLiteral("Description")},
                     {BudgetField, QStringLiteral("Budget")}},
                    CostCenterIdField);
    setStandardLayout(fields, grid);

    bindField(description, DescriptionField, &m_center.description, QStringLiteral("Description"),
              FieldBindings::Required);
    bindField(budget, BudgetField, &m_center.budget, QStringLiteral("Budget"),
              FieldBindings::Money);
    // The key travels in a hidden field; empty while a new cost centre is added.
    QLineEdit* centerId = lineEdit(this, "txtCostCenterID");
    centerId->hide();
    bindField(centerId, CostCenterIdField, &m_center.costCenterId);
    setNameField(description, DescriptionField);
    resize(6945 / FormPlacement::TwipsPerPixel, 3825 / FormPlacement::TwipsPerPixel);
}

QVariant CostCenterScreen::showCostCenterDetail(Session& session, Mode mode, const QVariant& id,
                                                QWidget* parent)
{
    CostCenterScreen screen(session, parent);
    screen.setPendingId(id);
    screen.run(mode);
    return screen.chosenId();
}

Rows CostCenterScreen::loadRecords()
{
    return m_manager.list();
}

bool CostCenterScreen::saveRecord(QVariant* id)
{
    if (!m_manager.saveRecord(m_center, mode() == Mode::Add)) {
        return false;
    }
    *id = m_center.costCenterId;
    return true;
}

QString CostCenterScreen::canDelete(const QVariant& id)
{
    return m_manager.canDeleteCostCenter(id.toLongLong());
}

bool CostCenterScreen::deleteRecord(const QVariant& id)
{
    return m_manager.deleteRecord(id.toLongLong());
}
