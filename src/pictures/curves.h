// Curves of Bezier pieces: 1 + 3n points.
#pragma once

#include <vector>

#include "pictures/picture.h"

namespace merivane::pictures {

// A piece that leaves and arrives level.
void AddBend(std::vector<Point>& curve, Point to);
// The same where the heights are alike; otherwise a straight piece.
void AddLine(std::vector<Point>& curve, Point to);
void AddCurve(std::vector<Point>& curve, const std::vector<Point>& more);

// Its points run from left to right, none back.
bool RunsRight(const std::vector<Point>& curve);

// The part left, or right, of `x`. REQUIRES: RunsRight(curve), and `x` lies within.
std::vector<Point> LeftPart(const std::vector<Point>& curve, double x);
std::vector<Point> RightPart(const std::vector<Point>& curve, double x);

// Heights as near to the wanted ones as can be (least squares), in their order, each at least
// `apart[i]` below the one before it. `apart[0]` counts for nothing.
std::vector<double> SpreadApart(const std::vector<double>& wanted,
                                const std::vector<double>& apart);

}  // namespace merivane::pictures
