#include "reconcile/complete_merge.h"

#include <gmock/gmock.h>

#include <set>

#include "foreign_xml.h"
#include "inspect/merge_preview.h"
#include "plan_sketch.h"
#include "round_fixture.h"

namespace merivane::test {

using namespace reconcile;

namespace {

using ::testing::IsEmpty;

class CompleteMergeTest : public RoundFixture {
 protected:
  MergeResult Merge(const std::string& plan) {
    program = std::make_unique<Program>(desktop);
    ProjectToModel& state = program->projectToModel;
    state.gInterimConn = Connect();
    state.gInterimProjId = 1;
    text = OpenOutput(state);
    MergeResult result = MergeCompletely(state, plan);
    program = std::make_unique<Program>(desktop);
    return result;
  }

  // What the merged text says otherwise than the plan, but for what a remark is about and the proof
  // doesn't promise of this merge.
  std::vector<std::string> Unexplained(const MergeResult& result) {
    const auto proof =
        inspect::ProveMerge(*Connect(OpenMode::kReadOnly), 1, text, TemplateDatabase());
    EXPECT_EQ(proof.failure, "");
    std::vector<std::string> rest;
    for (const auto& each : proof.differences) {
      const bool isTold = std::any_of(result.remarks.begin(), result.remarks.end(),
                                      [&](const Remark& remark) { return IsAbout(remark, each); });
      if (!isTold || (each.completeKeeps && !ShowsOnlyAtTheEnd(result, each)))
        rest.push_back(Described(each.element) + ": " + each.sentence);
    }
    return rest;
  }

  // What only a merge finds out, and no look at the plan alone.
  static bool ShowsOnlyAtTheEnd(const MergeResult& result, const inspect::MergeChange& difference) {
    return std::any_of(result.remarks.begin(), result.remarks.end(), [&](const Remark& remark) {
      return IsAbout(remark, difference) && (Holds(remark.sentence, "beside its other ones") ||
                                             Holds(remark.sentence, "don't fit into a labor rule"));
    });
  }

  static std::string Told(const MergeResult& result) {
    std::string told;
    for (const Remark& each : result.remarks) {
      told += std::to_string(each.row.value_or(0)) + " " + each.name + ": " + each.sentence + "\n";
    }
    return told;
  }

  // Whether the remark tells of this difference of this row, not of another one.
  static bool IsAbout(const Remark& remark, const inspect::MergeChange& difference) {
    struct Meaning {
      const char* remark;
      const char* difference;
      bool isOfItsRow = true;
    };
    constexpr Meaning kMeanings[] = {
        {"no start-to-finish relation", "doesn't give its predecessor"},
        {"lies under another summary task", "doesn't give its predecessor"},
        {"deeper than the ten levels", "It lies"},
        {"no lag", "its predecessor"},
        {"no lag", "gives it the predecessor"},
        {"can't hold its relation", "doesn't give its predecessor"},
        {"With its other relations", "gives it the predecessor"},
        {"has no cycle time", "It takes"},
        {"longer than a plan's note", "another note"},
        {"would end it in a text", "another note"},
        {"have another note", "another note"},
        {"It has resources itself", "Of resource"},
        {"units of resource", "Of resource"},
        {"don't fit into a labor rule", "Of resource"},
        {"has no alias", "Of resource"},
        {"so it stays out", "doesn't give it"},
        {"so it stays out", "Of resource", false},
        {"hold its quantity", "There are"},
        {"no number of its unit", "It stands"},
        {"can't hold its name", "calls it"},
    };
    // The other task or the resource that both sentences name in quotes.
    const auto quoted = [](std::string sentence) {
      for (std::size_t at = sentence.find("'s"); at < sentence.size();
           at = sentence.find("'s", at)) {
        sentence[at] = '\x92';  // as the remark has it
      }
      const std::size_t quote = sentence.find(" '");
      if (quote == std::string::npos) return std::string();
      const std::size_t from = quote + 2;
      return sentence.substr(from, sentence.find('\'', from) - from);
    };
    const std::string name = quoted(remark.sentence);
    return std::any_of(std::begin(kMeanings), std::end(kMeanings), [&](const Meaning& each) {
      if (!Holds(remark.sentence, each.remark) || !Holds(difference.sentence, each.difference)) {
        return false;
      }
      if (!each.isOfItsRow) return quoted(difference.sentence) == remark.name;
      const std::string other = quoted(difference.sentence);
      const bool isTogether =
          Holds(difference.sentence, "(SS)") || Holds(difference.sentence, "(FF)");
      if (isTogether && remark.name == other && name == difference.element.name) return true;
      return remark.row == difference.planRow && (name.empty() || name == other);
    });
  }
  static bool Holds(const std::string& text, const char* passage) {
    return text.find(passage) != std::string::npos;
  }

  using Row = std::vector<std::string>;

  // What no plan speaks of. Each row begins with the unit or the junction that it goes with.
  struct Unseen {
    std::set<std::string> owners;
    std::multiset<Row> rows;
  };

  // `numbers`: those that units got, by their earlier ones, which stand in the rows.
  Unseen ReadUnseen(const std::map<std::int32_t, std::int32_t>& numbers = {}) {
    RawDatabase database(databasePath);
    std::map<std::string, std::string> earlier;
    for (const auto& [before, now] : numbers) earlier[std::to_string(now)] = std::to_string(before);
    const auto numberOf = [&](const std::string& now) {
      const auto before = earlier.find(now);
      return before == earlier.end() ? now : before->second;
    };
    Unseen unseen;
    for (const Row& row : database.Rows("select 0 union select Use_Num from Activity_in_Scenario"
                                        " union select Num from Junctions_in_Scenario")) {
      unseen.owners.insert(numberOf(row[0]));
    }
    for (const char* sql :
         {"select 0, * from Fact_Pool", "select 0, * from Misc",
          "select 0, * from Object_Pool where Send_to_Project = 0",
          "select Parent_Num, u.Name, p.Name, Scenario_Num, Duration from Activity_in_Scenario u"
          " join Scenario s on s.Num = Scenario_Num left join Activity_Pool p on p.Num ="
          " Process_Num where u.Send_to_Project = 0",
          "select Use_Num, Ref, Fact_List, Constraint_List from Activity_in_Scenario",
          "select Activity_Num, Object_Occ_Num, u.Property_List, Qty from"
          " Object_in_Activity_in_Scenario u join Object_Pool o on o.Num = Object_Occ_Num"
          " where o.Send_to_Project = 0",
          "select * from Facts_in_Junction"}) {
      for (Row& row : database.Rows(sql)) {
        row[0] = numberOf(row[0]);
        unseen.rows.insert(std::move(row));
      }
    }
    return unseen;
  }

  // Rows that aren't among the others, where those have what they go with.
  static std::vector<Row> Missing(const Unseen& unseen, const Unseen& others) {
    std::vector<Row> missing;
    std::ranges::set_difference(unseen.rows, others.rows, std::back_inserter(missing));
    std::erase_if(missing, [&](const Row& row) { return !others.owners.contains(row[0]); });
    return missing;
  }

  std::vector<Row> WholeModel() {
    std::vector<Row> rows;
    for (const char* table :
         {"Activity_Pool", "Object_Pool", "Scenario", "Activity_in_Scenario",
          "Object_in_Activity_in_Scenario", "Junctions_in_Scenario", "Facts_in_Junction",
          "Links_in_Scenario", "MSP_TASKS where TASK_UID > 0", "MSP_LINKS", "MSP_ASSIGNMENTS"}) {
      for (auto& row : RawDatabase(databasePath).Rows("select * from " + std::string(table))) {
        rows.push_back(std::move(row));
      }
    }
    return rows;
  }

  // By MPX and by planning XML in turn.
  void ExpectRoundsKeepAll(const std::string& model, std::size_t seed, int rounds, int mostEdits,
                           bool isMadeAgain) {
    std::mt19937 random(static_cast<std::uint32_t>(seed));
    Translate(model);
    for (int round = 0; round < rounds && !HasFatalFailure(); ++round) {
      SCOPED_TRACE(round);
      ExpectARoundKeepsAll(random, mostEdits, round % 2 == 1);
      if (isMadeAgain) TranslateAgain();
    }
  }

  void ExpectARoundKeepsAll(std::mt19937& random, int mostEdits, bool isXml) {
    PlanSketch plan(databasePath);
    const Unseen before = ReadUnseen();
    for (int edits = std::uniform_int_distribution(1, mostEdits)(random); edits > 0; --edits) {
      plan.Edit(random);
    }
    const std::string file = PlanFile(plan, isXml && !plan.JumpsInOutline());
    SCOPED_TRACE(file);
    const MergeResult result = Merge(file);
    ASSERT_TRUE(result.merged) << testing::PrintToString(desktop.MessageTexts());
    ASSERT_THAT(Unexplained(result), IsEmpty()) << Told(result);
    const Unseen after = ReadUnseen(result.numbers);
    EXPECT_THAT(Missing(before, after), IsEmpty());
    EXPECT_THAT(Missing(after, before), IsEmpty());
  }

  std::string PlanFile(const PlanSketch& plan, bool isXml) {
    return folder.Write(isXml ? "plan.xml" : "plan.mpx", isXml ? plan.Xml() : plan.Mpx());
  }

  std::string text;
};

using CompleteMergeOfRandomModels = OfRandomModels<CompleteMergeTest>;
INSTANTIATE_TEST_SUITE_P(Seeds, CompleteMergeOfRandomModels, testing::Range(0u, 6u));

TEST_P(CompleteMergeOfRandomModels, AnUnchangedPlanChangesNothing) {
  ForSeeds(2, [this](const std::string& model) {
    Translate(model);
    const PlanSketch plan(databasePath);
    Sql("update MSP_TASKS set KV7_PROCOCC_BROUGHT_BACK = 1 where TASK_UID > 0;"
        "update Object_in_Activity_in_Scenario set Brought_from_Project = 1 where exists (select 1"
        " from MSP_ASSIGNMENTS a join MSP_TASKS t on t.TASK_UID = a.TASK_UID join MSP_RESOURCES r"
        " on r.RES_UID = a.RES_UID where KV7_PROCOCC_HEX = Activity_Num and KV7_OBJ_HEX ="
        " Object_Occ_Num)");
    const auto before = WholeModel();
    for (const bool isXml : {false, true}) {
      if (isXml && plan.JumpsInOutline()) continue;
      const MergeResult result = Merge(PlanFile(plan, isXml));
      ASSERT_TRUE(result.merged) << testing::PrintToString(desktop.MessageTexts());
      EXPECT_THAT(WholeModel(), testing::ElementsAreArray(before));
      EXPECT_THAT(Unexplained(result), IsEmpty());
    }
  });
}

// Each round begins with what the one before has left.
TEST_P(CompleteMergeOfRandomModels, KeepWhatAPlanHolds) {
  ForSeeds(ModelsOfAGroup(4), [&](const std::string& model) {
    ExpectRoundsKeepAll(model, ReadFile(model).size(), 2, 20, false);
  });
}

TEST_P(CompleteMergeOfRandomModels, KeepWhatAPlanHoldsForTenRoundsOfPlansMadeAgain) {
  ForSeeds(ModelsOfAGroup(1), [&](const std::string& model) {
    ExpectRoundsKeepAll(model, ReadFile(model).size(), 10, 3, true);
  });
}

TEST_F(CompleteMergeTest, SamplesKeepWhatAPlanHoldsForTenRoundsOfPlansMadeAgain) {
  for (const auto& sample : std::filesystem::directory_iterator(MERIVANE_SAMPLES)) {
    if (sample.path().extension() != ".txt") continue;
    SCOPED_TRACE(sample.path().string());
    ExpectRoundsKeepAll(sample.path().string(), ModelsOfAGroup(1), 10, 3, true);
  }
}

// Other numbers, another order of elements, levels and rows around the tasks: the text is the same.
TEST_P(CompleteMergeOfRandomModels, TakeAPlanOfAnotherProgramAsTheirOwn) {
  ForSeeds(ModelsOfAGroup(4), [&](const std::string& model) {
    std::mt19937 random(static_cast<std::uint32_t>(ReadFile(model).size()));
    Translate(model);
    PlanSketch plan(databasePath);
    for (int edits = static_cast<int>(random() % 6); edits > 0; --edits) plan.Edit(random);
    const std::string before = ReadFile(databasePath);
    const auto mergedText = [&](const std::string& file) {
      folder.Write(databasePath, before);
      EXPECT_TRUE(Merge(file).merged) << testing::PrintToString(desktop.MessageTexts());
      return ReadFile(text);
    };
    const std::string ofMpx = mergedText(folder.Write("plan.mpx", plan.Mpx()));
    EXPECT_TRUE(mergedText(folder.Write("plan.mpx", plan.Mpx(3))) == ofMpx);
    if (plan.JumpsInOutline()) return;
    const std::string ofXml = mergedText(folder.Write("plan.xml", plan.Xml()));
    for (int program = 0; program < 3; ++program) {
      const std::string foreign = ForeignXml(plan, random).Text();
      EXPECT_TRUE(mergedText(folder.Write("plan.xml", foreign)) == ofXml) << foreign;
    }
  });
}

TEST_P(CompleteMergeOfRandomModels, FindTheTasksOfAPlanWithoutNumbers) {
  ForSeeds(2, [this](const std::string& model) {
    Translate(model);
    PlanSketch plan(databasePath);
    if (plan.tasks.empty()) return;
    const std::string before = ReadFile(databasePath);
    ASSERT_TRUE(Merge(PlanFile(plan, false)).merged);
    const std::string direct = ReadFile(text);
    folder.Write(databasePath, before);
    for (auto& task : plan.tasks) task.unit.clear();
    const MergeResult result = Merge(PlanFile(plan, !plan.JumpsInOutline()));
    ASSERT_TRUE(result.merged) << testing::PrintToString(desktop.MessageTexts());
    EXPECT_EQ(result.byName.size(), plan.tasks.size());
    EXPECT_TRUE(ReadFile(text) == direct);
  });
}

class MergeIntoSample : public CompleteMergeTest {
 protected:
  PlanSketch Planned() {
    Translate(MERIVANE_SAMPLES "/onboarding.txt");
    return PlanSketch(databasePath);
  }
  std::string Asked(const std::string& sql) { return RawDatabase(databasePath).Ask(sql); }

  PlanSketch plan = Planned();
};

// Below the last task of the sample, whose resources would be told.
void AddBelow(PlanSketch& plan, int level) {
  std::erase_if(plan.assignments, [](const auto& row) { return row.first.first == 5; });
  plan.tasks.push_back({level + 7, "", "Level " + std::to_string(level), "1", level, "", {}});
}

// Tasks of the sample: 1 and then 2 and 3 beside each other, 4, 5. With each change a part of what
// is told of it.
const std::pair<void (*)(PlanSketch&), const char*> kChanges[] = {
    {[](PlanSketch& plan) { plan.tasks[4].predecessors[0].second = "FS+2d"; },
     "A model holds no lag"},
    {[](PlanSketch& plan) { plan.tasks[4].predecessors[0].second = "SF"; },
     "A model holds no start-to-finish relation"},
    {[](PlanSketch& plan) {
       plan.tasks.push_back({9, "", "Clear up", "3", 1, "", {{5, "FS"}}});
     },
     "a unit without objects has no cycle time"},
    {[](PlanSketch& plan) {
       AddBelow(plan, 2);
       plan.tasks.back().predecessors.emplace_back(4, "FS");
     },
     "lies under another summary task"},
    {[](PlanSketch& plan) {
       for (int level = 2; level <= 11; ++level) AddBelow(plan, level);
     },
     "deeper than the ten levels"},
    {[](PlanSketch& plan) {
       plan.tasks.push_back({9, "", plan.tasks[4].name, "1", 1, "Again", {{5, "FS"}}});
     },
     "Other tasks of its name have another note"},
    {[](PlanSketch& plan) { plan.assignments[std::pair(5, 3)] = "0.5"; },
     "a model holds whole ones up to 9"},
    {[](PlanSketch& plan) { plan.resources[9] = plan.resources[3]; },
     "a model holds one of a name"},
    {[](PlanSketch& plan) { plan.tasks[4].name = "It's done"; },
     "it is called 'It\x92s done' there"}};

TEST_F(MergeIntoSample, TellsWhatAModelCannotHold) {
  for (const auto& [change, told] : kChanges) {
    SCOPED_TRACE(told);
    plan = Planned();
    change(plan);
    const MergeResult result = Merge(PlanFile(plan, false));
    ASSERT_TRUE(result.merged) << testing::PrintToString(desktop.MessageTexts());
    ASSERT_EQ(result.remarks.size(), 1U);
    EXPECT_THAT(result.remarks[0].sentence, testing::HasSubstr(told));
    EXPECT_TRUE(result.remarks[0].row);
    EXPECT_FALSE(result.remarks[0].advice.empty());
    EXPECT_THAT(Unexplained(result), IsEmpty());
  }
}

TEST_F(MergeIntoSample, WhatAModelHasNoPlaceForIsToldByItsRowAndItsTaskStays) {
  constexpr const char* kUnits = "select Name || ';' from Activity_in_Scenario";
  const std::string units = Asked(kUnits);
  const std::pair<std::string, const char*> cases[] = {
      {"<ConstraintType>4</ConstraintType>", "Its constraint is left out."},
      {"<PercentComplete>50</PercentComplete>", "Its progress is left out."},
      {"<Manual>1</Manual>", "It is scheduled by hand; its duration is taken, its dates aren't."},
      {"<CalendarUID>3</CalendarUID>", "Its calendar is left out."},
      {"<FixedCost>5.5</FixedCost>", "Its fixed cost is left out."},
      {"<Active>0</Active>",
       "It is inactive; a model knows no such task, so that it is taken as any other."},
      {"<Name></Name>", "It has no name; it is called by its number."}};
  for (const auto& [field, told] : cases) {
    std::string xml = plan.Xml();
    xml.insert(xml.find("<OutlineLevel>", xml.find("<ID>2</ID>")), field);
    const MergeResult result = Merge(folder.Write("plan.xml", xml));
    ASSERT_TRUE(result.merged) << field;
    ASSERT_EQ(result.remarks.size(), 1U) << field;
    EXPECT_EQ(result.remarks[0].row, 2) << field;
    EXPECT_EQ(result.remarks[0].sentence, told);
    EXPECT_THAT(Unexplained(result), IsEmpty()) << field;
    if (field == "<Name></Name>") break;
    EXPECT_EQ(Asked(kUnits), units);
  }
}

// Sorted by their names, as a program that keeps the UIDs does it.
TEST_F(MergeIntoSample, ARenamedResourceIsFoundByItsUid) {
  std::string xml = plan.Xml();
  const auto inResources = [&](const std::string& from, const std::string& to) {
    xml.replace(xml.find(from, xml.find("<Resources>")), from.size(), to);
  };
  inResources("<ID>1</ID>", "<ID>2</ID>");
  inResources("<ID>2</ID><Name>S", "<ID>3</ID><Name>S");
  inResources("<ID>3</ID><Name>Mentor", "<ID>1</ID><Name>Adviser");
  constexpr const char* kObjects = "select Num || ';' from Object_Pool order by Num";
  const std::string before = Asked(kObjects);
  ASSERT_TRUE(Merge(folder.Write("plan.xml", xml)).merged);
  EXPECT_EQ(Asked(kObjects), before);
  EXPECT_EQ(Asked("select count(*) from Object_Pool where Name ='Adviser'"), "1");
}

TEST_F(MergeIntoSample, ACopiedTaskIsANewOne) {
  plan.tasks.push_back(plan.tasks[4]);
  plan.tasks[5].key = 9;
  plan.tasks[5].name += " again";
  constexpr const char* kUnits = "select count(*) from Activity_in_Scenario";
  for (const bool isXml : {false, true}) {
    const int units = std::stoi(Asked(kUnits));
    const MergeResult result = Merge(PlanFile(plan, isXml));
    ASSERT_TRUE(result.merged) << testing::PrintToString(desktop.MessageTexts());
    EXPECT_EQ(std::stoi(Asked(kUnits)), isXml ? units : units + 1);
  }
}

// Its tasks are numbered 1 to 5 without a gap, so that those behind the first one get new numbers,
// which the plan doesn't know when it comes again.
TEST_F(MergeIntoSample, AMovedTaskKeepsItsUnitWhenThePlanComesAgain) {
  std::rotate(plan.tasks.begin(), plan.tasks.begin() + 4, plan.tasks.end());
  const auto namesOf = [](const PlanSketch& sketch) {
    std::vector<std::string> names;
    for (const auto& task : sketch.tasks) names.push_back(task.name);
    return names;
  };
  MergeResult result = Merge(PlanFile(plan, true));
  EXPECT_EQ(result.numbers.size(), 4U);
  EXPECT_EQ(namesOf(PlanSketch(databasePath)), namesOf(plan));
  const std::string first = ReadFile(text);
  result = Merge(PlanFile(plan, true));
  EXPECT_EQ(result.byName, (std::vector<std::int32_t>{2, 3, 4, 5}));
  EXPECT_THAT(result.numbers, IsEmpty());
  EXPECT_EQ(ReadFile(text), first);
}

TEST_F(MergeIntoSample, APlanOfAnotherModelIsRefused) {
  for (auto& task : plan.tasks) {
    task.unit.clear();
    if (task.key > 2) task.name += " elsewhere";
  }
  const std::string before = ReadFile(databasePath);
  for (const bool isXml : {false, true}) EXPECT_FALSE(Merge(PlanFile(plan, isXml)).merged);
  EXPECT_EQ(ReadFile(databasePath), before);
}

TEST_F(MergeIntoSample, ACircleIsRefusedByNamesAndLeavesTheDatabase) {
  plan.tasks[3].predecessors.emplace_back(5, "FS");
  const std::string before = ReadFile(databasePath);
  EXPECT_FALSE(Merge(PlanFile(plan, false)).merged);
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_THAT(desktop.boxes[0].text,
              testing::HasSubstr("'" + plan.tasks[3].name + "', '" + plan.tasks[4].name + "'"));
  EXPECT_EQ(ReadFile(databasePath), before);
}

}  // namespace
}  // namespace merivane::test
