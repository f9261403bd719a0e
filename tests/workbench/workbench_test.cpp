// Files that the workbench opens: what is shown of them, and that what belongs together is found.
#include <gmock/gmock.h>

#include <algorithm>

#include "error_of.h"
#include "round_fixture.h"
#include "workbench/file_view.h"
#include "workbench/live_model.h"
#include "workbench/selection.h"

namespace merivane::test {

using namespace workbench;

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

namespace {

const std::string kFestival = MERIVANE_SAMPLES "/festival.txt";

class WorkbenchTest : public RoundFixture {
 protected:
  WorkbenchTest() { desktop.templatePath = TemplateDatabase(); }

  // A database with the model and its plan, and the plan as plan.mpx.
  void Translate(const std::string& model) {
    RoundFixture::Translate(model, folder.Path("plan.mpx"));
    program->files.CloseAll();
  }
  FileView Database() { return ViewDatabase(*Connect(OpenMode::kReadOnly), 1, desktop.Today()); }
  static const Element& Unit(const FileView& view, std::int32_t number) {
    for (const Element& element : view.elements) {
      if (element.kind == Element::Kind::kUnit && element.number == number) return element;
    }
    throw std::runtime_error("no unit " + std::to_string(number));
  }
  static std::string Property(const Element& element, const char* name) {
    for (const workbench::Property& property : element.properties) {
      if (property.name == name) return property.text;
    }
    return "";
  }
  static std::vector<std::string> InPlan(const FileView& view) {
    std::vector<std::string> names;
    for (const Element& element : view.elements) {
      if (!element.bar.empty()) names.push_back(element.name);
    }
    return names;
  }
};

TEST_F(WorkbenchTest, AUnitItsTaskItsLineAndItsNotesAreOneElement) {
  const FileView view = LiveModel(kFestival, desktop).View();
  const Element& built = Unit(view, 16);
  const auto place = static_cast<std::size_t>(&built - view.elements.data());
  EXPECT_EQ(Property(built, "Predecessors"), "3FS Fetch the stage parts");
  EXPECT_EQ(Property(built, "Duration"), "3 days");
  EXPECT_EQ(Property(built, "Early start"), "Jan 18, 2000 8:00");
  EXPECT_EQ(Property(built, "Slack"), "0d, critical");
  EXPECT_EQ(Property(Unit(view, 2), "Predecessors"),
            "1FS Obtain the permits\n12SS Sell the tickets");
  std::vector<std::string> lines(1);
  for (const char letter : ReadFile(kFestival)) {
    letter == '\n' ? lines.emplace_back() : lines.back() += letter;
  }
  EXPECT_THAT(lines.at(built.line - 1), HasSubstr("#16"));
  EXPECT_EQ(ElementOfFigure(view, *built.scenario, built.figure), place);
  EXPECT_EQ(ElementOfFigure(view, std::nullopt, built.figure), place);
  const ModelJunction& junction = view.model.scenarios.at(*built.scenario).junctions.at(0);
  const auto scenario =
      ElementOfFigure(view, std::nullopt, "junction-" + std::to_string(junction.number));
  EXPECT_EQ(view.elements.at(scenario.value()).scenario, built.scenario);
  EXPECT_EQ(ElementOfFigure(view, std::nullopt, "junction-999"), std::nullopt);
  EXPECT_EQ(ElementOfBar(view, built.bar), place);
  EXPECT_EQ(ElementOfBar(view, ""), std::nullopt);
  WorkListener nobody;
  const Picture drawn = DrawScenarios(view, *Unit(view, 2).decomposed, nobody).front().picture;
  const auto isBuilt = [&](const Figure& figure) { return figure.id == built.figure; };
  EXPECT_EQ(std::count_if(drawn.figures.begin(), drawn.figures.end(), isBuilt), 1);
  ASSERT_TRUE(view.chart);
  for (const Element& element : view.elements) {
    const auto isBar = [&](const Figure& figure) { return figure.id == element.bar; };
    const std::vector<Figure>& bars = view.chart->figures;
    EXPECT_TRUE(element.bar.empty() || std::any_of(bars.begin(), bars.end(), isBar)) << element.bar;
  }
  std::string why;
  for (const Note& note : view.notes) {
    if (note.element && view.elements[*note.element].number == 15) why = note.sentence;
    EXPECT_TRUE(note.kind != Note::Kind::kLeftOut || note.line > 0);
  }
  EXPECT_EQ(
      why,
      "Not in the plan: junction J9 (XOR) takes another path: its fact '2 (PathAt roof)' keeps "
      "link L52 to 'Build a roof from own timber', up to junction J10.");
  EXPECT_EQ(Unit(view, 15).bar, "");
}

TEST_F(WorkbenchTest, AnotherChoiceGivesAnotherPlanAndWritesNothing) {
  const std::string model = folder.Write("m.txt", ReadFile(MERIVANE_SAMPLES "/bakery.txt"));
  LiveModel live(model, desktop);
  const FileView first = live.View();
  ASSERT_EQ(first.choices.size(), 1U);
  EXPECT_THAT(first.choices[0].names, ElementsAre("Weekday bread", "Saturday cakes"));
  EXPECT_THAT(InPlan(first), Contains("Bake the loaves"));
  EXPECT_NE(Unit(first, 6).whyOut, "");
  live.Choose(first.choices[0].question, 1);
  const FileView second = live.View();
  EXPECT_EQ(second.choices[0].chosen, 1U);
  EXPECT_THAT(InPlan(second),
              ElementsAre("Soften the butter", "Bake the cakes", "Dust with sugar"));
  EXPECT_EQ(Unit(second, 6).whyOut, "");
  EXPECT_NE(Unit(second, 1).whyOut, "");
  EXPECT_EQ(SameElement(Unit(first, 6), second), SameElement(Unit(second, 6), first));
  live.Choose(first.choices[0].question, 0);
  EXPECT_EQ(InPlan(live.View()), InPlan(first));
  EXPECT_EQ(ReadFile(model), ReadFile(MERIVANE_SAMPLES "/bakery.txt"));
  EXPECT_THAT(desktop.boxes, IsEmpty());
}

// The text without what stands between these words behind `from`.
std::string Emptied(std::string text, const std::string& from, const std::string& list) {
  const std::size_t begin = text.find("\n  " + list, text.find(from));
  const std::size_t inside = text.find('\n', begin + 1) + 1;
  text.erase(inside, text.find("  End  " + list, inside) - inside);
  return text;
}

TEST_F(WorkbenchTest, AScenarioWithoutUnitsCanBeChosenAndLeft) {
  std::string text = ReadFile(MERIVANE_SAMPLES "/bakery.txt");
  for (const char* list : {"Process Occurrence List", "Link List"}) {
    text = Emptied(text, "\nScenario  2", list);
  }
  LiveModel live(folder.Write("m.txt", text), desktop);
  const FileView first = live.View();
  ASSERT_EQ(first.choices.size(), 1U);
  live.Choose(first.choices[0].question, 1);
  const FileView empty = live.View();
  EXPECT_EQ(empty.choices.at(0).chosen, 1U);
  EXPECT_FALSE(empty.chart);
  EXPECT_NE(empty.whyNoChart, "");
  EXPECT_THAT(InPlan(empty), IsEmpty());
  WorkListener nobody;
  EXPECT_EQ(DrawScenarios(empty, std::nullopt, nobody).size(), 2U);
  live.Choose(first.choices[0].question, 7);  // there are no more names: the last one
  EXPECT_EQ(live.View().choices.at(0).chosen, 1U);
  live.Choose(first.choices[0].question, 0);
  EXPECT_EQ(InPlan(live.View()), InPlan(first));
}

TEST_F(WorkbenchTest, ATextThatBreaksOffIsShownAsFarAsItGoes) {
  const std::string whole = ReadFile(kFestival);
  for (const std::size_t size :
       {std::size_t{0}, std::size_t{40}, whole.size() / 2, whole.size() - 9}) {
    const std::string file = folder.Write("half.txt", whole.substr(0, size));
    const FileView view = LiveModel(file, desktop).View();
    EXPECT_FALSE(view.chart) << size;
    EXPECT_NE(view.whyNoChart, "") << size;
    ASSERT_FALSE(view.lines.empty()) << size;
    EXPECT_EQ(view.elements.empty(), size < whole.size() / 3) << size;
  }
  EXPECT_EQ(ErrorOf([&] { LiveModel(folder.Path("none.txt"), desktop); }), 53);
}

TEST_F(WorkbenchTest, ADatabaseShowsItsModelBesideItsPlanWhateverIsNull) {
  Translate(kFestival);
  const FileView whole = Database();
  EXPECT_EQ(InPlan(whole), InPlan(LiveModel(kFestival, desktop).View()));
  EXPECT_EQ(Property(Unit(whole, 16), "Predecessors"), "3FS Fetch the stage parts");
  const std::string kept = ReadFile(databasePath);
  for (const auto& [table, column] : {std::pair{"Scenario", "Num"},
                                      {"Scenario", "Name"},
                                      {"Scenario", "Parent_Num"},
                                      {"Activity_in_Scenario", "Use_Num"},
                                      {"Activity_in_Scenario", "Scenario_Num"},
                                      {"Activity_in_Scenario", "Name"},
                                      {"Activity_in_Scenario", "Duration"},
                                      {"Activity_in_Scenario", "Send_to_Project"},
                                      {"Junctions_in_Scenario", "ID"},
                                      {"Junctions_in_Scenario", "Type"},
                                      {"Links_in_Scenario", "Origin_Num"},
                                      {"MSP_TASKS", "TASK_NAME"},
                                      {"MSP_TASKS", "TASK_ID"},
                                      {"MSP_TASKS", "TASK_DUR"},
                                      {"MSP_TASKS", "TASK_OUTLINE_LEVEL"},
                                      {"MSP_TASKS", "KV7_PROCOCC_HEX"},
                                      {"MSP_LINKS", "LINK_TYPE"},
                                      {"MSP_LINKS", "LINK_LAG"},
                                      {"MSP_PROJECTS", "PROJ_NAME"}}) {
    Sql(std::string("update ") + table + " set " + column + " = null");
    EXPECT_NO_THROW(EXPECT_FALSE(Database().elements.empty())) << table << '.' << column;
    std::filesystem::remove(databasePath);
    std::ofstream(databasePath, std::ios::binary) << kept;
  }
  EXPECT_THAT(Database().chart->description, HasSubstr("dates computed"));
  Sql("update MSP_TASKS set TASK_START_DATE = '2/3/2026 8:00:00 AM',"
      " TASK_FINISH_DATE = '2/9/2026 5:00:00 PM'");
  EXPECT_THAT(Database().chart->description, HasSubstr("Feb 3, 2026 to Feb 9, 2026"));
  Sql("delete from Scenario; delete from MSP_TASKS");
  EXPECT_EQ(ErrorOf([&] { Database(); }), 5);
}

TEST_F(WorkbenchTest, APlanThatCantBeMadeLeavesItsTasksAndOneWithoutAModelStandsAlone) {
  Translate(MERIVANE_SAMPLES "/onboarding.txt");
  const FileView whole = Database();
  Sql("insert into MSP_LINKS (PROJ_ID, LINK_UID, LINK_PRED_UID, LINK_SUCC_UID, LINK_TYPE) "
      "select PROJ_ID, 99, LINK_SUCC_UID, LINK_PRED_UID, 1 from MSP_LINKS limit 1");
  const FileView circle = Database();
  EXPECT_FALSE(circle.chart);
  EXPECT_THAT(circle.whyNoChart, HasSubstr("circle"));
  EXPECT_EQ(InPlan(circle), InPlan(whole));
  for (const Element& element : circle.elements) EXPECT_EQ(Property(element, "Early start"), "");
  Sql("delete from MSP_LINKS; delete from Scenario; delete from Activity_in_Scenario");
  const FileView plan = Database();
  EXPECT_TRUE(plan.chart);
  EXPECT_EQ(InPlan(plan), InPlan(whole));
  for (const Element& element : plan.elements) {
    EXPECT_EQ(element.kind, Element::Kind::kTask);
    EXPECT_FALSE(element.scenario);
  }
  Selection selection(plan);
  EXPECT_TRUE(selection.Choose(1));
  EXPECT_FALSE(selection.Into() || selection.Out());
  Sql("delete from MSP_TASKS where TASK_UID > 0");
  EXPECT_EQ(ErrorOf([&] { Database(); }), 5);
}

TEST_F(WorkbenchTest, APlanFileShowsItsTasksOrTellsWhyItCant) {
  Translate(kFestival);
  const FileView mpx = ViewPlanFile(folder.Path("plan.mpx"), desktop);
  EXPECT_TRUE(mpx.chart);
  EXPECT_EQ(InPlan(mpx).size(), InPlan(Database()).size());
  EXPECT_EQ(Property(mpx.elements.at(3), "Predecessors"), "3FS Fetch the stage parts");
  EXPECT_EQ(mpx.elements.at(2).level, mpx.elements.at(1).level + 1);
  const std::string xml =
      "<Project xmlns='http://schemas.microsoft.com/project'><Tasks><Task><UID>1</UID><ID>1</ID>"
      "<Name>Cut</Name><OutlineLevel>1</OutlineLevel><Duration>PT16H0M0S</Duration></Task></Tasks>"
      "</Project>";
  const FileView plan = ViewPlanFile(folder.Write("a.xml", xml), desktop);
  EXPECT_THAT(InPlan(plan), ElementsAre("Cut"));
  EXPECT_EQ(Property(plan.elements.at(0), "Duration"), "2d");
  const std::string half = folder.Write("half.xml", xml.substr(0, xml.size() / 2));
  std::string why;
  EXPECT_NE(ErrorOf([&] { ViewPlanFile(half, desktop); }, &why), 0);
  EXPECT_THAT(why, HasSubstr("half.xml"));
  EXPECT_EQ(ErrorOf([&] { ViewPlanFile(folder.Write("b.mpx", "no plan"), desktop); }), 5);
  EXPECT_EQ(ErrorOf([&] { ViewPlanFile(folder.Path("none.mpx"), desktop); }), 53);
}

// Signs and names of the units that have a mark.
std::vector<std::string> Marked(const FileView& view) {
  std::vector<std::string> marked;
  for (const Element& element : view.elements) {
    if (element.mark == Mark::kNone) continue;
    marked.push_back(SignOf(element.mark) + (' ' + element.name));
  }
  return marked;
}

std::size_t SignsIn(const Figure& figure) {
  return static_cast<std::size_t>(
      std::count_if(figure.shapes.begin(), figure.shapes.end(), [](const Shape& shape) {
        const auto* text = std::get_if<Text>(&shape);
        return text != nullptr && text->ink == Ink::kJunctionSign &&
               std::string("+~\x96").find(text->text) != std::string::npos;
      }));
}

std::size_t SignsIn(const Picture& picture) {
  std::size_t signs = 0;
  for (const Figure& figure : picture.figures) signs += SignsIn(figure);
  return signs;
}

TEST_F(WorkbenchTest, AMergeMarksWhatItChangesInBothPicturesAndTouchesNothing) {
  Translate(MERIVANE_SAMPLES "/onboarding.txt");
  const std::string last = "70,5,5,Work on the first task with the mentor,3.00d,Yes,1,,";
  const std::string plan = folder.Write(
      "changed.mpx", With(ReadFile(folder.Path("plan.mpx")), {{"Set up the desk", "Build the desk"},
                                                              {last + "\"4\"", last + "\"4,1\""}}) +
                         "70,6,6,Clear up,1.00d,Yes,1,,\"5\"\r\n");
  const std::string database = ReadFile(databasePath);
  for (const bool isComplete : {false, true}) {
    SCOPED_TRACE(isComplete);
    const FileView view = ViewMerge({plan, databasePath, 1, isComplete}, desktop);
    EXPECT_THAT(Marked(view), ElementsAre("~ Build the desk (was Set up the desk)", "+ Clear up"));
    EXPECT_THAT(view.lines, ElementsAre(HasSubstr("Nothing was changed yet.")));
    std::size_t links = 0;
    for (const Note& note : view.notes) {
      links += note.about == "link" ? 1 : 0;
      EXPECT_TRUE(note.change && note.element) << note.about << note.sentence;
    }
    EXPECT_GE(links, 4U);  // between junctions, too
    std::size_t marked = 2 + links;
    for (const ModelJunction& junction : view.model.scenarios.at(0).junctions) {
      if (junction.mark != Mark::kNone) ++marked;
    }
    WorkListener nobody;
    EXPECT_EQ(SignsIn(DrawScenarios(view, 0, nobody).front().picture), marked);
    ASSERT_TRUE(view.chart) << view.whyNoChart;
    EXPECT_EQ(SignsIn(*view.chart), 2U);
  }
  EXPECT_EQ(ReadFile(databasePath), database);
  const std::string gone = With(ReadFile(folder.Path("plan.mpx")),
                                {{"70,5,5,Work on the first task with the mentor", "0,5,5,Gone"}});
  const std::string fewer = folder.Write("fewer.mpx", gone);
  for (const bool isComplete : {false, true}) {
    SCOPED_TRACE(isComplete);
    const FileView view = ViewMerge({fewer, databasePath, 1, isComplete}, desktop);
    const Element& unit = Unit(view, 5);
    EXPECT_EQ(unit.mark, isComplete ? Mark::kRemoved : Mark::kChanged);  // it lives on
    EXPECT_THAT(unit.bar, StartsWith("before-"));
    EXPECT_EQ(ElementOfBar(view, unit.bar), static_cast<std::size_t>(&unit - &view.elements[0]));
    EXPECT_EQ(view.notes.at(0).element, ElementOfBar(view, unit.bar));
    EXPECT_EQ(SignsIn(view.chart.value()), 1U);
  }
  const FileView none = ViewMerge({folder.Write("none.mpx", "none"), databasePath, 1}, desktop);
  EXPECT_EQ(none.notes.at(0).change, ChangeKind::kStop);
  EXPECT_THAT(Marked(none), IsEmpty());
  EXPECT_TRUE(none.chart);  // the model as it is
  // A picture that can't be made leaves the preview.
  Sql("alter table Fact_Pool rename to Elsewhere");
  const FileView bare = ViewMerge({plan, databasePath, 1}, desktop);
  EXPECT_THAT(bare.notes.at(0).sentence, HasSubstr("Set up the desk"));
  EXPECT_THAT(bare.lines, Contains(HasSubstr("The pictures can't be made: ")));
}

TEST_F(WorkbenchTest, TheSelectionGoesBackForwardIntoAndOutAndOutlivesItsView) {
  const FileView festival = LiveModel(kFestival, desktop).View();
  Selection selection(festival);
  const auto at = [&](std::int32_t unit) {
    return static_cast<std::size_t>(&Unit(festival, unit) - festival.elements.data());
  };
  const auto name = [&](const FileView& view) {
    return selection.Chosen() ? view.elements[*selection.Chosen()].name : "none";
  };
  EXPECT_FALSE(selection.Back() || selection.Forward() || selection.Into() || selection.Out());
  EXPECT_TRUE(selection.Choose(at(2)));
  EXPECT_FALSE(selection.Choose(at(2)));
  EXPECT_TRUE(selection.Into());
  EXPECT_EQ(name(festival), "Stage building");
  EXPECT_FALSE(selection.Into());
  EXPECT_TRUE(selection.Choose(at(16)));
  EXPECT_TRUE(selection.Out() && selection.Out() && selection.Out());
  EXPECT_EQ(name(festival), "Harbour Lights Festival");
  EXPECT_FALSE(selection.Out());
  EXPECT_TRUE(selection.Back() && selection.Back());
  EXPECT_EQ(name(festival), "Stage building");
  EXPECT_TRUE(selection.CanGoForward());
  EXPECT_TRUE(selection.Choose(at(14)));  // what lay ahead is no more
  EXPECT_FALSE(selection.Forward());
  const auto without = [](FileView view, std::vector<std::int32_t> units) {
    std::erase_if(view.elements, [&](const Element& element) {
      return element.kind == Element::Kind::kUnit &&
             std::find(units.begin(), units.end(), element.number) != units.end();
    });
    return view;
  };
  const FileView smaller = without(festival, {14});
  selection.Show(smaller);
  EXPECT_EQ(name(smaller), "Stage building");  // the step before
  EXPECT_FALSE(selection.CanGoForward());
  const char* way[] = {"Build a roof from own timber", "Stage building",
                       "Bring the stage to the quay"};
  for (const char* before : way) {
    EXPECT_TRUE(selection.Back());
    EXPECT_EQ(name(smaller), before);
  }
  EXPECT_FALSE(selection.CanGoBack() || selection.Back());
  // What is chosen goes, and nothing stood before it; what lay ahead stays ahead.
  const FileView smallest = without(smaller, {2});
  selection.Show(smallest);
  EXPECT_EQ(name(smallest), "none");
  EXPECT_TRUE(selection.CanGoForward() && selection.Forward());
  EXPECT_EQ(name(smallest), "Stage building");
  const FileView nothing;
  selection.Show(nothing);
  EXPECT_EQ(selection.Chosen(), std::nullopt);
  EXPECT_FALSE(selection.CanGoBack() || selection.CanGoForward());
}

}  // namespace

}  // namespace merivane::test
