-- A handful of documents for the statements to run on: 1 and 2 are imports, 3 a temporary one, 4 one that was not
-- transferred, 5 one in the afternoon of the last day, 6 and 7 exports.
PRAGMA synchronous = OFF;
BEGIN;
CREATE TABLE An (An INTEGER);
CREATE TABLE CapDocIntE (Document TEXT COLLATE NOCASE, EC INTEGER, Furnizor TEXT COLLATE NOCASE,
  [Denumire Furnizor] TEXT COLLATE NOCASE, [Data Documentului] TEXT, [Valoare Neta] NUMERIC, [Valoare TVA] NUMERIC,
  [Valoare Taxe] NUMERIC, [Tip Valuta] TEXT COLLATE NOCASE, [Curs Valutar] NUMERIC, Depozit INTEGER, Agent INTEGER,
  Transferat TEXT COLLATE NOCASE);
CREATE TABLE [Linii DocIntE] (Document TEXT COLLATE NOCASE, [Cod Produs] TEXT COLLATE NOCASE);
CREATE TABLE CoduriProdus ([Cod Produs] TEXT COLLATE NOCASE, [Denumire Produs] TEXT COLLATE NOCASE,
  [Tip Produs] TEXT COLLATE NOCASE, [Subgrupa Produs] TEXT COLLATE NOCASE, P TEXT COLLATE NOCASE);
CREATE TABLE SubGrupeProdus ([Subgrupa Produs] TEXT COLLATE NOCASE, [Grupa Produs] TEXT COLLATE NOCASE,
  Descriere TEXT COLLATE NOCASE);
CREATE TABLE GrupeProdus ([Grupa Produs] TEXT COLLATE NOCASE, Descriere TEXT COLLATE NOCASE);
CREATE TABLE TipuriProduse ([Tip Produs] TEXT COLLATE NOCASE, Fel INTEGER);
CREATE TABLE CPP (p TEXT COLLATE NOCASE, Denumire TEXT COLLATE NOCASE);
CREATE TABLE Furnizori (Furnizor TEXT COLLATE NOCASE, [Denumire Furnizor] TEXT COLLATE NOCASE,
  [Tip Furnizor] TEXT COLLATE NOCASE, [Categorie Furnizor] TEXT COLLATE NOCASE, Inactiv INTEGER);
CREATE TABLE Magazine (Magazin TEXT COLLATE NOCASE, [Denumire Magazin] TEXT COLLATE NOCASE,
  [Tip Client] TEXT COLLATE NOCASE, [Categorie Client] TEXT COLLATE NOCASE, Inactiv INTEGER);
CREATE TABLE Agenti (Agent INTEGER, [Denumire Agent] TEXT COLLATE NOCASE, Inactiv INTEGER);
CREATE TABLE [Tip Furnizor] ([Tip Furnizor] TEXT COLLATE NOCASE, Descriere TEXT COLLATE NOCASE);
CREATE TABLE [Categorie Furnizor] ([Categorie Furnizor] TEXT COLLATE NOCASE, Descriere TEXT COLLATE NOCASE);
CREATE TABLE [Tip Client] ([Tip Client] TEXT COLLATE NOCASE, Descriere TEXT COLLATE NOCASE);
CREATE TABLE [Categorie Client] ([Categorie Client] TEXT COLLATE NOCASE, Descriere TEXT COLLATE NOCASE);

INSERT INTO GrupeProdus VALUES ('G1', 'Organe de asamblare'), ('G2', 'Servicii');
INSERT INTO SubGrupeProdus VALUES ('S1', 'G1', 'Suruburi'), ('S2', 'G2', 'Transport');
INSERT INTO TipuriProduse VALUES ('MP', 3), ('TR', 5), ('LN', 8);
INSERT INTO CPP VALUES ('PR001', 'Uzina Unu'), ('PR002', 'Uzina Doi');
INSERT INTO CoduriProdus VALUES ('P1', 'Surub M8', 'MP', 'S1', 'PR001'), ('P2', 'Surub M10', 'MP', 'S1', 'PR002'),
  ('T1', 'Transport rutier', 'TR', 'S2', NULL), ('L1', 'Prelucrare', 'LN', 'S2', NULL);
INSERT INTO Furnizori VALUES ('F1', 'ALFA TRADE SRL', 'EXT', 'A1', 0), ('F2', 'BETA GMBH', 'EXT', 'B', 1);
INSERT INTO Magazine VALUES ('C1', 'GAMA SA', 'UE', 'B', 0), ('C2', 'DELTA LTD', 'EXT', 'A', 0);
INSERT INTO Agenti VALUES (5, 'Agent Est', 0), (12, 'Agent Vest', 1);
INSERT INTO [Tip Furnizor] VALUES ('EXT', 'extern');
INSERT INTO [Categorie Furnizor] VALUES ('A1', 'mari'), ('B', 'mici');
INSERT INTO [Tip Client] VALUES ('UE', 'comunitar'), ('EXT', 'extern');
INSERT INTO [Categorie Client] VALUES ('A', 'mari'), ('B', 'mici');
INSERT INTO CapDocIntE VALUES
  ('1', 63, 'F1', 'ALFA TRADE SRL', '2026-03-01', 100.25, 19, 1.5, 'EUR', 4.97, 1, 5, 'F'),
  ('2', 63, 'F2', 'BETA GMBH', '2026-03-15', 10, 0, 0, 'USD', 4.5, 4, 12, 'T'),
  ('3', 89, 'F1', 'ALFA TRADE SRL', '2026-03-10', 20, 0, 0, 'EUR', 4.97, 1, 5, 'S'),
  ('4', 63, 'F1', 'ALFA TRADE SRL', '2026-03-10', 30, 0, 0, 'EUR', 4.97, 1, 5, 'X'),
  ('5', 63, 'F1', 'ALFA TRADE SRL', '2026-03-15 14:30:00', 40, 0, 0, 'EUR', 4.97, 1, 5, 'R'),
  ('6', 13, 'C1', 'GAMA SA', '2026-03-05', 50, 0, 0, 'EUR', 4.97, 7, 5, 'X'),
  ('7', 13, 'C2', 'DELTA LTD', '2026-03-06', 60, 0, 0, 'EUR', 4.97, 120, 5, NULL);
INSERT INTO [Linii DocIntE] VALUES ('1', 'P1'), ('1', 'P1'), ('1', 'T1'), ('2', 'P2'), ('3', 'L1'), ('4', 'P1'),
  ('5', 'P1'), ('6', 'P1'), ('7', 'T1'), ('7', 'P2');
COMMIT;
