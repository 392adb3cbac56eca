-- Standard contents of a new TendMark database.

INSERT INTO States (StateCode) VALUES ('AK'), ('AL'), ('AR'), ('AS'), ('AZ'), ('CA'), ('CO'), ('CT'), ('DC'), ('DE'), ('FL'), ('GA'), ('GU'), ('HI'), ('IA'), ('ID'), ('IL'), ('IN'), ('KS'), ('KY'), ('LA'), ('MA'), ('MD'), ('ME'), ('MI'), ('MN'), ('MO'), ('MP'), ('MS'), ('MT'), ('NC'), ('ND'), ('NE'), ('NH'), ('NJ'), ('NM'), ('NV'), ('NY'), ('OH'), ('OK'), ('OR'), ('PA'), ('PR'), ('RI'), ('SC'), ('SD'), ('TN'), ('TX'), ('UT'), ('VA'), ('VI'), ('VT'), ('WA'), ('WI'), ('WV'), ('WY');
INSERT INTO Gender (GenderCode) VALUES ('M'), ('F');
INSERT INTO EducationLevel (EducationLevelDescription) VALUES ('Less than high school'), ('Some high school'), ('High school diploma or GED'), ('Some college'), ('Associate degree'), ('Bachelor''s degree'), ('Graduate degree');
INSERT INTO EthnicOrigin (EthnicOriginDescription) VALUES ('African American'), ('American Indian or Alaska Native'), ('Asian'), ('Hispanic or Latino'), ('Native Hawaiian or Pacific Islander'), ('White'), ('Multiracial'), ('Other');
INSERT INTO ExpenseCategories (ExpenseCategoryDescription) VALUES ('Rent or mortgage'), ('Utilities'), ('Food'), ('Transportation'), ('Medical'), ('Child care'), ('Insurance'), ('Other');
INSERT INTO FoodServiceTypes (FoodServiceTypeDescription) VALUES ('Emergency food box'), ('Regular grocery visit'), ('Holiday basket'), ('Baby supplies'), ('Senior box');
INSERT INTO Housing (HousingDescription) VALUES ('Renting'), ('Own home'), ('Living with family or friends'), ('Shelter'), ('Homeless'), ('Other');
INSERT INTO IncomeSources (IncomeSourceDescription) VALUES ('Employment'), ('Social Security'), ('SSI / Disability'), ('Unemployment'), ('Child support'), ('Pension'), ('SNAP'), ('TANF'), ('Other');
INSERT INTO MaritalStatus (MaritalStatusDescription) VALUES ('Single'), ('Married'), ('Divorced'), ('Separated'), ('Widowed');
INSERT INTO OtherAssistance (OtherAssistanceDescription) VALUES ('None'), ('SNAP'), ('WIC'), ('TANF'), ('Medicaid'), ('Housing assistance'), ('Other');
INSERT INTO PaymentTypes (PaymentTypeDescription) VALUES ('Rent'), ('Utilities'), ('Prescription'), ('Transportation'), ('Other');
INSERT INTO Relationships (RelationshipDescription) VALUES ('Spouse'), ('Partner'), ('Son'), ('Daughter'), ('Parent'), ('Grandchild'), ('Sibling'), ('Other relative'), ('Other');
INSERT INTO ReligiousPreference (ReligiousPreferenceDescription) VALUES ('None stated'), ('Catholic'), ('Protestant'), ('Jewish'), ('Muslim'), ('Other');
INSERT INTO Organization (OrganizationName) VALUES (NULL);
INSERT INTO Options DEFAULT VALUES;
