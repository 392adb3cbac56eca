-- The standard label templates: the common US Letter and A4 address sheets.
-- Measures are inches; PaperSize is Letter (8 1/2 x 11 in) or A4 (210 x 297 mm).
-- A template already in the file under the same name is left as it is, and
-- 5160 becomes the default only when no template is the default yet.
--
-- Sources of the figures:
-- * Avery 5160 and 8160 (the same sheet, laser and inkjet): the maker's sheet,
--   3/16 in side margin, 2 3/4 in across, 1 in down, 1/2 in top margin. gLabels'
--   template has 5/32 in and 2 25/32 in instead; the maker is followed here.
-- * Avery 5161, 5162, 5163, 5164, 5167: gLabels' Avery US Letter templates
--   (templates/avery-us-templates.xml), whose figures are the maker's published
--   ones; 5163's side margin there reads 0.1625 in, a slip for the 5/32 in of
--   its family (the sheet is symmetrical with 5/32 in), which is used here.
-- * Avery L7160, L7161, L7163, L7165: LibreOffice's label list
--   (officecfg/registry/data/org/openoffice/Office/Labels.xcu, "Avery A4",
--   values in 1/100 mm), converted to inches (mm / 25.4). gLabels' A4 templates
--   (templates/avery-iso-templates.xml) agree within 0.3 mm, except L7161
--   (top 8.1 mm, pitch 46.7 mm), where LibreOffice's symmetrical sheet is kept.
ALTER TABLE LabelDetails ADD COLUMN PaperSize VARCHAR(10) NOT NULL DEFAULT 'Letter' CHECK (PaperSize IN ('Letter', 'A4'));
INSERT INTO LabelDetails (Description, Height, Width, TopMargin, SideMargin, VerticalPitch, HorizontalPitch, NumberAcross, NumberDown, PaperSize, "Default")
SELECT v.column1, v.column2, v.column3, v.column4, v.column5, v.column6, v.column7, v.column8, v.column9, v.column10,
       CASE WHEN v.column11 = 1 AND NOT EXISTS (SELECT 1 FROM LabelDetails WHERE "Default" = 1) THEN 1 ELSE 0 END
FROM (VALUES
    -- Description, Height, Width, TopMargin, SideMargin, VerticalPitch, HorizontalPitch, NumberAcross, NumberDown, PaperSize, Default
    ('Avery 5160 Address (1 x 2 5/8 in, 30 per sheet)', 1.0, 2.625, 0.5, 0.1875, 1.0, 2.75, 3, 10, 'Letter', 1),
    ('Avery 5161 Address (1 x 4 in, 20 per sheet)', 1.0, 4.0, 0.5, 0.15625, 1.0, 4.1875, 2, 10, 'Letter', 0),
    ('Avery 5162 Address (1 1/3 x 4 in, 14 per sheet)', 1.333333, 4.0, 0.833333, 0.15625, 1.333333, 4.1875, 2, 7, 'Letter', 0),
    ('Avery 5163 Shipping (2 x 4 in, 10 per sheet)', 2.0, 4.0, 0.5, 0.15625, 2.0, 4.1875, 2, 5, 'Letter', 0),
    ('Avery 5164 Shipping (3 1/3 x 4 in, 6 per sheet)', 3.333333, 4.0, 0.5, 0.15625, 3.333333, 4.1875, 2, 3, 'Letter', 0),
    ('Avery 5167 Return Address (1/2 x 1 3/4 in, 80 per sheet)', 0.5, 1.75, 0.5, 0.28125, 0.5, 2.0625, 4, 20, 'Letter', 0),
    ('Avery 8160 Address, inkjet (1 x 2 5/8 in, 30 per sheet)', 1.0, 2.625, 0.5, 0.1875, 1.0, 2.75, 3, 10, 'Letter', 0),
    -- 63.5 x 38.1 mm, top 15.15 mm, side 7.20 mm, pitches 66.04 and 38.10 mm
    ('Avery L7160 Address (63.5 x 38.1 mm, 21 per sheet, A4)', 1.5, 2.5, 0.596457, 0.283465, 1.5, 2.6, 3, 7, 'A4', 0),
    -- 63.5 x 46.56 mm, top 8.82 mm, side 7.21 mm, pitches 66.04 and 46.56 mm
    ('Avery L7161 Address (63.5 x 46.6 mm, 18 per sheet, A4)', 1.833071, 2.5, 0.347244, 0.283858, 1.833071, 2.6, 3, 6, 'A4', 0),
    -- 99.06 x 38.1 mm, top 15.15 mm, side 4.67 mm, pitches 101.6 and 38.10 mm
    ('Avery L7163 Address (99.1 x 38.1 mm, 14 per sheet, A4)', 1.5, 3.9, 0.596457, 0.183858, 1.5, 4.0, 2, 7, 'A4', 0),
    -- 99.06 x 67.73 mm, top 13.04 mm, side 4.67 mm, pitches 101.6 and 67.73 mm
    ('Avery L7165 Parcel (99.1 x 67.7 mm, 8 per sheet, A4)', 2.666535, 3.9, 0.513386, 0.183858, 2.666535, 4.0, 2, 4, 'A4', 0)
) AS v
WHERE NOT EXISTS (SELECT 1 FROM LabelDetails d WHERE d.Description = v.column1);
