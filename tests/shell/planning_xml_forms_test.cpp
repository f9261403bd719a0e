#include <gmock/gmock.h>

#include "database_fixture.h"
#include "shell/frmMain.h"

namespace merivane::test {

using namespace shell;

namespace {

class XmlTabs : public DatabaseFixture {
 protected:
  void Pick(const std::string& name) { desktop.fileNames.push_back(folder.Path(name)); }

  frmMain main{*program};
};

TEST_F(XmlTabs, ModelGoesIntoXmlAndXmlIntoAModel) {
  frmIDEF3ToProject& out = main.modelToProject;
  out.Show();
  out.SSTabGenerateOpt = frmIDEF3ToProject::kXmlTab;
  out.cmdOK();
  out.txtCelvarFilename.text = MERIVANE_SAMPLES "/onboarding.txt";
  out.cmdOK();
  Pick("plan.mpx");
  out.cmdBrowseXML();
  EXPECT_EQ(out.txtXml.text, "");
  Pick("plan.xml");
  out.cmdBrowseXML();
  out.cmdOK();
  EXPECT_EQ(desktop.MessageTexts(),
            (std::vector<std::string>{"Please Select Source Celvar Text Filename",
                                      "Please Select Xml Output Filename.", "Incorrect File Type",
                                      "Please Give an interim Database Name."}));
  desktop.registry[kProject2000Key] = "project.exe %1";
  out.CkLaunchMsprojApp.checked = true;
  out.CkLaunchMsprojApp_Click();
  Pick("interim.mdb");
  out.BrowsedbBt_xml();
  out.cmdOK();
  EXPECT_EQ(out.GenerateResult, true);
  EXPECT_THAT(desktop.startedCommands,
              testing::ElementsAre("project.exe " + folder.Path("plan.xml")));

  desktop.shown.clear();
  frmProjectToIDEF3& in = main.projectToModel;
  in.Show();
  in.SSTabInput = frmProjectToIDEF3::kXmlTab;
  in.cmdOK();
  Pick("plan.xml");
  in.cmdBrowseXML();
  EXPECT_TRUE(in.txtXML.enabled);
  in.cmdOK();
  Pick("again.mdb");
  in.cmdInterimDB_xml();
  EXPECT_EQ(in.txtInterimDB.text, "");
  in.cmdOK();
  Pick("again.txt");
  in.cmdBrowseText();
  in.cmdOK();
  EXPECT_EQ(desktop.MessageTexts(),
            (std::vector<std::string>{"Please Select a XML file",
                                      "Please Give an Interim Access Database Filename",
                                      "Please Select Target Celvar Text Filename."}));
  EXPECT_EQ(in.GenerateResult, true);
  EXPECT_THAT(ReadFile(folder.Path("again.txt")), testing::HasSubstr("Set up the desk"));
}

}  // namespace
}  // namespace merivane::test
