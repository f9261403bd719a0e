// The reader's entry points and the helpers of its rules.
#pragma once

#include <string>
#include <string_view>

#include "program/program.h"

namespace merivane::neutraltext {

using namespace program;

// Up to `length` characters behind the first double blank at or behind position `start` of the
// line; empty without one. Nothing is trimmed.
std::string FieldAfterBlanks(std::string_view line, std::size_t start, std::size_t length);

// Puts zeros in front of a text of 0 to 4 characters up to five; any other stays.
void PadToFiveDigits(std::string& text);

// Name rules of the reader: a box and the end of the program for a name that breaks them, unless a
// listener takes it.
void ValidateUobName(ModelToProject& state, const std::string& name);
void ValidateObjectName(ModelToProject& state, const std::string& name);

// The name under which a further project comes into gMspConn, told apart from those of `projects`;
// "Project 1" for a blank one.
// Of an overwritten database the name stays.
std::string NameApartFromOthers(ModelToProject& state, Recordset& projects, std::string name);

// Loads a Neutral Text file into the interim tables of gMspConn under gMspProjId. A failure while
// reading is reported and leaves the rows so far and the file open; a file that can't be opened
// ends the program.
void ReadNeutralText(ModelToProject& state, const std::string& fileName);

// Opens the file as gTextFile and reads its first line. False, with a box, for a file of another
// kind; it is read all the same.
bool CheckNeutralTextHeader(ModelToProject& state, const std::string& fileName);
void ReadModel(ModelToProject& state);

// Gives back the input's file number, which stays taken from CheckNeutralTextHeader until the
// translation is over so that no other file gets it, and closes the file if a failed read left it
// open. For the driver's end on every path; nothing where no number is held.
void ReleaseNeutralTextFile(ModelToProject& state);

}  // namespace merivane::neutraltext
