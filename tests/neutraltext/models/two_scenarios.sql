update MSP_TASKS set KV7_PROC_HEX = 11, KV7_PROCOCC_HEX = 31, KV7_SCENARIO_HEX = 20,
  KV7_PROCOCC_ID = 6, KV7_PROCOCC_REF = 'A1', KV7_PROCOCC_COLUMN = '3', KV7_PROCOCC_ROW = '4',
  KV7_PROCOCC_FACT_LIST = 'f', KV7_PROCOCC_CONSTRAINT_LIST = 'c',
  KV7_PROCOCC_DURATION = '2.5' where TASK_UID = 1;
update MSP_TASKS set KV7_PROC_HEX = 12, KV7_PROCOCC_HEX = 32, KV7_SCENARIO_HEX = 21,
  KV7_PROCOCC_DURATION = '1' where TASK_UID = 2;
insert into Activity_Pool (Num, Msp_ProjID) values (11, 1), (12, 1);
insert into Scenario (Num, Msp_ProjID, Parent_Num, Type, Creator, ID)
values (21, 1, 31, 'Process View', 'Bob', 0);
insert into Scenario
values (20, 1, 'House', 0, '', 'Role View', 'Ann', 8, 1.5, 'Draft', '1', '2', 'pu', 'vi', 'co',
  'de', 'oo', 'ff', 'cc', 'nn', 'ss', 'rr', 'right', 0, 1);
insert into Junctions_in_Scenario
values (40, 1, 20, 'X1', 'Fan Out', 'OR', '1', '2', '5', '6', 'g', 'o', 'f', 'c', 'n', 'p', 0);
insert into Junctions_in_Scenario (Num, Msp_ProjID, Scenario_Num) values (41, 1, 20);
insert into Links_in_Scenario (Num, Msp_ProjID, Scenario_Num, Origin_Num, Destination_Num, ID,
  Type, Glossary, Object_Occ_List, Fact_List, Constraint_List, Property_List)
values (50, 1, 20, 31, 40, 3, 'Relational', 'g', 'o', 'f', 'c', 'p');
insert into Links_in_Scenario (Num, Msp_ProjID, Scenario_Num, Origin_Num, Destination_Num)
values (51, 1, 20, 41, 40), (52, 1, 20, 31, 32), (53, 1, 20, 31, 99);
insert into MSP_RESOURCES (PROJ_ID, RES_UID, KV7_OBJ_HEX, KV7_OBJ_CELVAR_TYPE, KV7_OBJ_ALIAS)
values (1, 1, 60, 'Entity', 'e'), (1, 2, 61, 'Transport', 't'),
  (1, 3, 62, 'Shared Resource', 'mason'), (1, 4, 63, 'Shared Resource', 'crane'),
  (1, 5, 64, null, 'x');
alter table MSP_RESOURCES add column num int;
alter table MSP_RESOURCES add column Msp_ProjID int;
alter table MSP_RESOURCES add column Alias text;
update MSP_RESOURCES set num = KV7_OBJ_HEX, Msp_ProjID = 1, Alias = upper(KV7_OBJ_ALIAS);
insert into Object_in_Activity_in_Scenario (Scenario_Num, Activity_Num, Object_Occ_Num,
  Msp_ProjID, Labor_Rule, Qty, Brought_from_Project)
values (20, 31, 60, 1, 'own', 1, 0), (20, 31, 60, 1, 'None', 1, 0), (20, 31, 61, 1, 'x', 1, 0),
  (20, 31, 64, 1, 'x', 1, 0), (20, 31, 65, 1, 'x', 1, 0), (20, 31, 60, 2, 'x', 1, 0),
  (21, 32, 60, 1, 'x', 1, 0), (21, 32, 62, 1, '', 2, 1), (21, 32, 61, 1, '', 9, 1),
  (21, 32, 63, 1, '', 1, 1);
