#pragma once

class QWidget;
class Session;

/**
 * A window's place and size, remembered per workstation as the options
 * form name + "LEFT", "TOP", "HEIGHT" and "WIDTH", in twips (15 a pixel).
 * The form's objectName is the form name.
 */
namespace FormPlacement {

inline constexpr int TwipsPerPixel = 15;
/** The main screen's side bar: a window without a stored left stands beside it. */
inline constexpr int SideBarWidthTwips = 2180;
/** The overdue board's header panel: a window without a stored top stands below two of them. */
inline constexpr int OverdueHeaderHeightTwips = 725;

/**
 * Places and sizes form from its stored options, sets the program's icon
 * and applies the colour scheme. Without stored values the left and top
 * defaults apply and the size stays as designed.
 */
void restore(Session& session, QWidget* form);

/** Stores form's place and size for this workstation. */
void store(Session& session, const QWidget* form);

} // namespace FormPlacement
