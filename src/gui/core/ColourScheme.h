#pragma once

#include <QColor>
#include <QString>

class QWidget;

/**
 * The look every screen shares: one font family, the form and frame
 * background, the label colour, panels, and the grid colours. Applied once
 * when a screen is placed, to the screen and all its children.
 */
namespace ColourScheme {

inline const QColor FormBackground{231, 232, 231};
inline const QColor LabelForeground{36, 71, 109};
inline const QColor PanelBackground{241, 239, 226};
inline const QColor GridSelection{49, 101, 255};
inline const QColor GridSelectionText{Qt::white};
inline const QColor GridAlternateRow{240, 240, 240};

/** "Arial" where it is installed, else a family every Debian machine has. */
QString fontFamily();

/** Colours and font for root and every widget below it, by kind of widget. */
void apply(QWidget* root);

} // namespace ColourScheme
