insert into MSP_PROJECTS (PROJ_ID, KV7_PROJ_PROPERTY_LIST) values (1, 'kept');
insert into Activity_Pool (Num, Msp_ProjID, Name, Creator, Last_Modified, Glossary, ID, Ref,
  Fact_List)
values (7, 2, 'other', 'x', 'x', 'x', 1, 'x', 'x'),
  (7, 1, 'Old', 'Ann', '3/4/1999', 'Two' || char(13, 10) || 'lines', 12, 'A1', '  Fact  #1');
update MSP_TASKS set KV7_PROC_HEX = case TASK_UID when 1 then 7 when 3 then 8 else 0 end;
insert into MSP_RESOURCES (PROJ_ID, RES_UID, RES_NAME, RES_MAX_UNITS, RES_TYPE, KV7_OBJ_HEX,
  KV7_OBJ_CREATOR, KV7_OBJ_DATE_CREATED, KV7_OBJ_LAST_MODIFIED, KV7_OBJ_GLOSSARY,
  KV7_OBJ_NOTE_LIST, KV7_OBJ_SOURCE_LIST, KV7_OBJ_PROPERTY_LIST, KV7_OBJ_DUNMAR_TYPE,
  KV7_OBJ_CELVAR_TYPE, KV7_OBJOCC_LIST, KV7_OBJ_FACT_LIST, KV7_OBJ_CONSTRAINT_LIST)
values
  (1, 1, 'Mason', 2, -1, 5, 'Ann', '1', '2', 'g', 'n', 's', 'p', 'Tool', 'Entity', 'o', 'f', 'c'),
  (1, 2, 'Crane', null, -1, 6, null, null, null, null, null, null, null, null, null, null, null,
  null);
insert into Object_Pool (Num, Msp_ProjID, Name, Glossary, Note_List, Dunmar_Type, Constraint_List,
  Send_to_Project)
values (8, 2, 'Heat', 'hot', 'lost', 'Law', 'cc', 0), (0, 1, 'no number', '', '', '', '', 0),
  (9, 1, 'sent', '', '', '', '', 1);
insert into Misc
values (2, 'x', 'x', 'x', 'x', 'x', 'x'), (1, 'st' || char(13, 10), 'pr', null, 'no', null, 'un');
insert into Fact_Pool
values (4, 1, 'Cold', 'Ann', '1', '2', 'g', 'n', 's', 'p'),
  (5, 1, null, null, null, null, null, null, null, null),
  (6, 2, null, null, null, null, null, null, null, null);
