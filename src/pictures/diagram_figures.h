// The parts of a diagram: what a unit, a junction and a link look like.
#pragma once

#include "layout.h"
#include "pictures/picture.h"
#include "pictures/process_model.h"

namespace merivane::pictures {

// The room that a figure needs, its middle being where links meet it.
GraphNode SizeOf(const Unit& unit, bool objects);
double BoxHeightOf(const Unit& unit);  // without the objects below it
GraphNode SizeOfJunction();

Figure DrawUnit(const Unit& unit, Point centre, bool objects);
Figure DrawJunction(const Junction& junction, Point centre, bool sent);
Figure DrawLink(const Link& link, const Route& route, bool sent);

// What a tool tip tells of a unit, and what a reader without the picture gets.
std::string DescriptionOf(const Unit& unit);
std::string DescriptionOf(const Junction& junction);

}  // namespace merivane::pictures
