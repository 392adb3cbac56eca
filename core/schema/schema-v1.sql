-- TendMark database, schema version 1.
-- Text sizes are declared here and read back at run time by field validation.
-- Dates are ISO text (yyyy-MM-dd); money is integer cents; yes/no is 0 or 1.

CREATE TABLE States (
    StateID INTEGER PRIMARY KEY AUTOINCREMENT,
    StateCode VARCHAR(2) NOT NULL
);

CREATE TABLE Gender (
    GenderID INTEGER PRIMARY KEY AUTOINCREMENT,
    GenderCode VARCHAR(1) NOT NULL
);

CREATE TABLE ZipCode (
    ZipCodeID INTEGER PRIMARY KEY AUTOINCREMENT,
    ZipCode VARCHAR(10) NOT NULL,
    City VARCHAR(50),
    State VARCHAR(2)
);
CREATE INDEX ZipCodeByCode ON ZipCode (ZipCode);

CREATE TABLE EducationLevel (
    EducationLevelID INTEGER PRIMARY KEY AUTOINCREMENT,
    EducationLevelDescription VARCHAR(50) NOT NULL
);
CREATE TABLE EthnicOrigin (
    EthnicOriginID INTEGER PRIMARY KEY AUTOINCREMENT,
    EthnicOriginDescription VARCHAR(50) NOT NULL
);
CREATE TABLE ExpenseCategories (
    ExpenseCategoryID INTEGER PRIMARY KEY AUTOINCREMENT,
    ExpenseCategoryDescription VARCHAR(50) NOT NULL
);
CREATE TABLE FoodServiceTypes (
    FoodServiceTypeID INTEGER PRIMARY KEY AUTOINCREMENT,
    FoodServiceTypeDescription VARCHAR(50) NOT NULL
);
CREATE TABLE Housing (
    HousingID INTEGER PRIMARY KEY AUTOINCREMENT,
    HousingDescription VARCHAR(50) NOT NULL
);
CREATE TABLE IncomeSources (
    IncomeSourceID INTEGER PRIMARY KEY AUTOINCREMENT,
    IncomeSourceDescription VARCHAR(50) NOT NULL
);
CREATE TABLE MaritalStatus (
    MaritalStatusID INTEGER PRIMARY KEY AUTOINCREMENT,
    MaritalStatusDescription VARCHAR(50) NOT NULL
);
CREATE TABLE OtherAssistance (
    OtherAssistanceID INTEGER PRIMARY KEY AUTOINCREMENT,
    OtherAssistanceDescription VARCHAR(50) NOT NULL
);
CREATE TABLE PaymentTypes (
    PaymentTypeID INTEGER PRIMARY KEY AUTOINCREMENT,
    PaymentTypeDescription VARCHAR(50) NOT NULL
);
CREATE TABLE Relationships (
    RelationshipID INTEGER PRIMARY KEY AUTOINCREMENT,
    RelationshipDescription VARCHAR(50) NOT NULL
);
CREATE TABLE ReligiousPreference (
    ReligiousPreferenceID INTEGER PRIMARY KEY AUTOINCREMENT,
    ReligiousPreferenceDescription VARCHAR(50) NOT NULL
);

CREATE TABLE Client (
    ClientID INTEGER PRIMARY KEY AUTOINCREMENT,
    LastName VARCHAR(50) COLLATE NOCASE,
    FirstName VARCHAR(50) COLLATE NOCASE,
    MiddleInitial VARCHAR(1),
    SocialSecurityNumber VARCHAR(11) COLLATE NOCASE,
    DriversLicenseNumber VARCHAR(20) COLLATE NOCASE,
    Address VARCHAR(100),
    City VARCHAR(50),
    State VARCHAR(2),
    ZipCode VARCHAR(10),
    HomePhone VARCHAR(10),
    WorkPhone VARCHAR(10),
    MobilePhone VARCHAR(10),
    Fax VARCHAR(10),
    BirthDate DATE CHECK (BirthDate IS NULL OR BirthDate GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]'),
    Gender VARCHAR(1),
    MaritalStatusID INTEGER REFERENCES MaritalStatus (MaritalStatusID),
    EthnicOriginID INTEGER REFERENCES EthnicOrigin (EthnicOriginID),
    EducationLevelID INTEGER REFERENCES EducationLevel (EducationLevelID),
    HousingID INTEGER REFERENCES Housing (HousingID),
    ReligiousPreferenceID INTEGER REFERENCES ReligiousPreference (ReligiousPreferenceID),
    OtherAssistanceID INTEGER REFERENCES OtherAssistance (OtherAssistanceID),
    EmployerName VARCHAR(50),
    EmployerAddress VARCHAR(100),
    EmployerCity VARCHAR(50),
    EmployerState VARCHAR(2),
    EmployerZip VARCHAR(10),
    EmployerDurationYears INTEGER,
    EmployerDurationMonths INTEGER,
    FormerAddress TEXT,
    DietaryRequirements TEXT,
    MedicalProblems TEXT,
    RelativesSearchingFor TEXT,
    FEMAContacted BOOLEAN NOT NULL DEFAULT 0,
    FEMAEligible BOOLEAN NOT NULL DEFAULT 0,
    FEMAComments TEXT,
    Comments TEXT
);
CREATE INDEX ClientByName ON Client (LastName, FirstName, MiddleInitial, SocialSecurityNumber, DriversLicenseNumber);
CREATE INDEX ClientBySSN ON Client (SocialSecurityNumber);
CREATE INDEX ClientByDLN ON Client (DriversLicenseNumber);
CREATE INDEX ClientByAddress ON Client (lower(Address), lower(City), State);
CREATE INDEX ClientByBirthDate ON Client (BirthDate);
CREATE INDEX ClientByCity ON Client (City);
CREATE INDEX ClientByZip ON Client (ZipCode);
CREATE INDEX ClientByMaritalStatus ON Client (MaritalStatusID);
CREATE INDEX ClientByEthnicOrigin ON Client (EthnicOriginID);
CREATE INDEX ClientByEducationLevel ON Client (EducationLevelID);
CREATE INDEX ClientByHousing ON Client (HousingID);
CREATE INDEX ClientByReligiousPreference ON Client (ReligiousPreferenceID);
CREATE INDEX ClientByOtherAssistance ON Client (OtherAssistanceID);

CREATE TABLE Family (
    FamilyMemberID INTEGER PRIMARY KEY AUTOINCREMENT,
    ClientID INTEGER NOT NULL REFERENCES Client (ClientID) ON DELETE CASCADE,
    RelationshipID INTEGER REFERENCES Relationships (RelationshipID),
    LastName VARCHAR(50) COLLATE NOCASE,
    FirstName VARCHAR(50) COLLATE NOCASE,
    MiddleInitial VARCHAR(1),
    SocialSecurityNumber VARCHAR(11) COLLATE NOCASE,
    DriversLicenseNumber VARCHAR(20) COLLATE NOCASE,
    BirthDate DATE CHECK (BirthDate IS NULL OR BirthDate GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]'),
    Gender VARCHAR(1),
    EthnicOriginID INTEGER REFERENCES EthnicOrigin (EthnicOriginID),
    EducationLevelID INTEGER REFERENCES EducationLevel (EducationLevelID),
    Address VARCHAR(100),
    City VARCHAR(50),
    State VARCHAR(2),
    ZipCode VARCHAR(10),
    WorkPhone VARCHAR(10),
    MobilePhone VARCHAR(10),
    EmployerName VARCHAR(50),
    EmployerAddress VARCHAR(100),
    EmployerCity VARCHAR(50),
    EmployerState VARCHAR(2),
    EmployerZip VARCHAR(10),
    EmployerDurationYears INTEGER,
    EmployerDurationMonths INTEGER,
    Comments TEXT
);
CREATE INDEX FamilyByClient ON Family (ClientID);
CREATE INDEX FamilyByName ON Family (LastName, FirstName);
CREATE INDEX FamilyBySSN ON Family (SocialSecurityNumber);
CREATE INDEX FamilyByDLN ON Family (DriversLicenseNumber);
CREATE INDEX FamilyByRelationship ON Family (RelationshipID);
CREATE INDEX FamilyByEthnicOrigin ON Family (EthnicOriginID);
CREATE INDEX FamilyByEducationLevel ON Family (EducationLevelID);

CREATE TABLE FoodService (
    FoodServiceID INTEGER PRIMARY KEY AUTOINCREMENT,
    ClientID INTEGER NOT NULL REFERENCES Client (ClientID) ON DELETE CASCADE,
    FoodServiceDate DATE CHECK (FoodServiceDate IS NULL OR FoodServiceDate GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]'),
    FoodServiceTypeID INTEGER REFERENCES FoodServiceTypes (FoodServiceTypeID),
    NumberOfBags INTEGER,
    Comments TEXT
);
CREATE INDEX FoodServiceByClient ON FoodService (ClientID, FoodServiceDate);
CREATE INDEX FoodServiceByDate ON FoodService (FoodServiceDate);
CREATE INDEX FoodServiceByType ON FoodService (FoodServiceTypeID);

CREATE TABLE Payments (
    PaymentID INTEGER PRIMARY KEY AUTOINCREMENT,
    ClientID INTEGER NOT NULL REFERENCES Client (ClientID) ON DELETE CASCADE,
    PaymentDate DATE CHECK (PaymentDate IS NULL OR PaymentDate GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]'),
    PaymentsTypeID INTEGER REFERENCES PaymentTypes (PaymentTypeID),
    AmountRequested CURRENCY CHECK (AmountRequested IS NULL OR typeof(AmountRequested) = 'integer'),
    AmountPaid CURRENCY CHECK (AmountPaid IS NULL OR typeof(AmountPaid) = 'integer'),
    Comments TEXT
);
CREATE INDEX PaymentsByClient ON Payments (ClientID, PaymentDate);
CREATE INDEX PaymentsByDate ON Payments (PaymentDate);
CREATE INDEX PaymentsByType ON Payments (PaymentsTypeID);

CREATE TABLE Income (
    IncomeItemID INTEGER PRIMARY KEY AUTOINCREMENT,
    ClientID INTEGER NOT NULL REFERENCES Client (ClientID) ON DELETE CASCADE,
    IncomeSourceID INTEGER REFERENCES IncomeSources (IncomeSourceID),
    Amount CURRENCY CHECK (Amount IS NULL OR typeof(Amount) = 'integer')
);
CREATE INDEX IncomeByClient ON Income (ClientID);
CREATE INDEX IncomeBySource ON Income (IncomeSourceID);

CREATE TABLE Expenses (
    ExpenseItemID INTEGER PRIMARY KEY AUTOINCREMENT,
    ClientID INTEGER NOT NULL REFERENCES Client (ClientID) ON DELETE CASCADE,
    ExpenseCategoryID INTEGER REFERENCES ExpenseCategories (ExpenseCategoryID),
    Amount CURRENCY CHECK (Amount IS NULL OR typeof(Amount) = 'integer')
);
CREATE INDEX ExpensesByClient ON Expenses (ClientID);
CREATE INDEX ExpensesByCategory ON Expenses (ExpenseCategoryID);

CREATE TABLE Volunteer (
    VolunteerID INTEGER PRIMARY KEY AUTOINCREMENT,
    LastName VARCHAR(50) COLLATE NOCASE,
    FirstName VARCHAR(50) COLLATE NOCASE,
    MiddleInitial VARCHAR(1),
    Address VARCHAR(100),
    City VARCHAR(50),
    State VARCHAR(2),
    ZipCode VARCHAR(10),
    HomePhone VARCHAR(10),
    WorkPhone VARCHAR(10),
    MobilePhone VARCHAR(10),
    Fax VARCHAR(10),
    EMailAddress VARCHAR(100) COLLATE NOCASE,
    Affiliation VARCHAR(50),
    EmergencyContact VARCHAR(50),
    EmergencyContactPhone VARCHAR(10),
    NumberInParty INTEGER,
    Comments TEXT
);
CREATE INDEX VolunteerByName ON Volunteer (LastName, FirstName);

CREATE TABLE Organization (
    OrganizationName VARCHAR(100),
    OrganizationAddress VARCHAR(100),
    OrganizationCity VARCHAR(50),
    OrganizationState VARCHAR(2),
    OrganizationZip VARCHAR(10),
    OrganizationPhone VARCHAR(10),
    OrganizationLogo VARCHAR(255)
);

CREATE TABLE Options (
    ShowNotesTab BOOLEAN NOT NULL DEFAULT 1,
    ShowEmployerTab BOOLEAN NOT NULL DEFAULT 1,
    ShowFamilyMembersTab BOOLEAN NOT NULL DEFAULT 1,
    ShowFoodServiceTab BOOLEAN NOT NULL DEFAULT 1,
    ShowPaymentHistoryTab BOOLEAN NOT NULL DEFAULT 1,
    ShowIncomeExpensesTab BOOLEAN NOT NULL DEFAULT 1,
    ShowHealthMedicalTab BOOLEAN NOT NULL DEFAULT 1,
    ShowFEMATab BOOLEAN NOT NULL DEFAULT 1,
    ShowFormerAddressTab BOOLEAN NOT NULL DEFAULT 1,
    FoodVisitIntervalDays INTEGER NOT NULL DEFAULT 0
);

CREATE TABLE LabelDetails (
    ID INTEGER PRIMARY KEY AUTOINCREMENT,
    Description VARCHAR(50) NOT NULL,
    Height DOUBLE NOT NULL,
    Width DOUBLE NOT NULL,
    TopMargin DOUBLE NOT NULL,
    SideMargin DOUBLE NOT NULL,
    VerticalPitch DOUBLE NOT NULL,
    HorizontalPitch DOUBLE NOT NULL,
    NumberAcross INTEGER NOT NULL,
    NumberDown INTEGER NOT NULL,
    "Default" BOOLEAN NOT NULL DEFAULT 0
);
