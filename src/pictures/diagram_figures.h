// The parts of a diagram: what a unit, a junction and a link look like.
#pragma once

#include "layout.h"
#include "pictures/picture.h"
#include "pictures/process_model.h"

namespace merivane::pictures {

// The room that a figure needs, its middle being where links meet it.
GraphNode SizeOf(const ModelUnit& unit, bool objects);
double BoxHeightOf(const ModelUnit& unit);  // without the objects below it
GraphNode SizeOfJunction();

Figure DrawUnit(const ModelUnit& unit, Point centre, bool objects);
Figure DrawJunction(const ModelJunction& junction, Point centre, bool sent);
Figure DrawLink(const ModelLink& link, const Route& route, bool sent);

// What a tool tip tells of a unit, and what a reader without the picture gets.
std::string DescriptionOf(const ModelUnit& unit);
std::string DescriptionOf(const ModelJunction& junction);

}  // namespace merivane::pictures
