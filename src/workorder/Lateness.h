#pragma once

#include <QDate>
#include <QString>

class Session;

/**
 * How late a due line is, as the work order grids colour it. The thresholds are
 * days (the options SERVICE_LATE_RED and SERVICE_LATE_YELLOW); a blank one is 0,
 * and 0 switches its colour off.
 */
namespace Lateness {

enum class Colour { None, Red, Yellow };

struct Thresholds
{
    int red = 0;
    int yellow = 0;
};

/** Backgrounds as 0xRRGGBB; red rows also get white text. */
inline constexpr unsigned RedBackground = 0xFF0000;
inline constexpr unsigned YellowBackground = 0xFFFFAF;

/** The thresholds as the options hold them now. */
Thresholds thresholds(Session& session);

/**
 * The colour of a line due on nextServiceDate. With a red threshold set, yellow is
 * never used, not even for a line below red: the red one decides alone.
 */
Colour colour(const QDate& nextServiceDate, const QDate& today, const Thresholds& thresholds);

} // namespace Lateness
