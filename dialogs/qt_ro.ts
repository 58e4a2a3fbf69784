<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ro_RO" sourcelanguage="en">
  <context>
    <name>QPlatformTheme</name>
    <message>
      <source>OK</source>
      <translation>OK</translation>
    </message>
    <message>
      <source>Save</source>
      <translation>Salvează</translation>
    </message>
    <message>
      <source>Save All</source>
      <translation>Salvează tot</translation>
    </message>
    <message>
      <source>Open</source>
      <translation>Deschide</translation>
    </message>
    <message>
      <source>&amp;Yes</source>
      <translation>&amp;Da</translation>
    </message>
    <message>
      <source>Yes to &amp;All</source>
      <translation>Da la &amp;toate</translation>
    </message>
    <message>
      <source>&amp;No</source>
      <translation>&amp;Nu</translation>
    </message>
    <message>
      <source>N&amp;o to All</source>
      <translation>N&amp;u la toate</translation>
    </message>
    <message>
      <source>Abort</source>
      <translation>Abandonează</translation>
    </message>
    <message>
      <source>Retry</source>
      <translation>Reîncearcă</translation>
    </message>
    <message>
      <source>Ignore</source>
      <translation>Ignoră</translation>
    </message>
    <message>
      <source>Close</source>
      <translation>Închide</translation>
    </message>
    <message>
      <source>Cancel</source>
      <translation>Renunță</translation>
    </message>
    <message>
      <source>Discard</source>
      <translation>Nu salva</translation>
    </message>
    <message>
      <source>Help</source>
      <translation>Ajutor</translation>
    </message>
    <message>
      <source>Apply</source>
      <translation>Aplică</translation>
    </message>
    <message>
      <source>Reset</source>
      <translation>Reinițializează</translation>
    </message>
    <message>
      <source>Restore Defaults</source>
      <translation>Valori implicite</translation>
    </message>
  </context>
  <context>
    <name>QDialogButtonBox</name>
    <message>
      <source>OK</source>
      <translation>OK</translation>
    </message>
    <message>
      <source>&amp;OK</source>
      <translation>&amp;OK</translation>
    </message>
    <message>
      <source>Save</source>
      <translation>Salvează</translation>
    </message>
    <message>
      <source>&amp;Save</source>
      <translation>&amp;Salvează</translation>
    </message>
    <message>
      <source>Save All</source>
      <translation>Salvează tot</translation>
    </message>
    <message>
      <source>Open</source>
      <translation>Deschide</translation>
    </message>
    <message>
      <source>&amp;Yes</source>
      <translation>&amp;Da</translation>
    </message>
    <message>
      <source>Yes to &amp;All</source>
      <translation>Da la &amp;toate</translation>
    </message>
    <message>
      <source>&amp;No</source>
      <translation>&amp;Nu</translation>
    </message>
    <message>
      <source>N&amp;o to All</source>
      <translation>N&amp;u la toate</translation>
    </message>
    <message>
      <source>Abort</source>
      <translation>Abandonează</translation>
    </message>
    <message>
      <source>Retry</source>
      <translation>Reîncearcă</translation>
    </message>
    <message>
      <source>Ignore</source>
      <translation>Ignoră</translation>
    </message>
    <message>
      <source>Close</source>
      <translation>Închide</translation>
    </message>
    <message>
      <source>&amp;Close</source>
      <translation>În&amp;chide</translation>
    </message>
    <message>
      <source>Cancel</source>
      <translation>Renunță</translation>
    </message>
    <message>
      <source>&amp;Cancel</source>
      <translation>&amp;Renunță</translation>
    </message>
    <message>
      <source>Close without Saving</source>
      <translation>Închide fără salvare</translation>
    </message>
    <message>
      <source>Discard</source>
      <translation>Nu salva</translation>
    </message>
    <message>
      <source>Don't Save</source>
      <translation>Nu salva</translation>
    </message>
    <message>
      <source>Help</source>
      <translation>Ajutor</translation>
    </message>
    <message>
      <source>Apply</source>
      <translation>Aplică</translation>
    </message>
    <message>
      <source>Reset</source>
      <translation>Reinițializează</translation>
    </message>
    <message>
      <source>Restore Defaults</source>
      <translation>Valori implicite</translation>
    </message>
  </context>
  <context>
    <name>QMessageBox</name>
    <message>
      <source>OK</source>
      <translation>OK</translation>
    </message>
    <message>
      <source>Help</source>
      <translation>Ajutor</translation>
    </message>
    <message>
      <source>Show Details...</source>
      <translation>Arată detaliile…</translation>
    </message>
    <message>
      <source>Hide Details...</source>
      <translation>Ascunde detaliile…</translation>
    </message>
  </context>
  <context>
    <name>QDialog</name>
    <message>
      <source>What's This?</source>
      <translation>Ce este aceasta?</translation>
    </message>
  </context>
  <context>
    <name>QProgressDialog</name>
    <message>
      <source>Cancel</source>
      <translation>Renunță</translation>
    </message>
  </context>
  <context>
    <name>QFileDialog</name>
    <message>
      <source>Look in:</source>
      <translation>Caută în:</translation>
    </message>
    <message>
      <source>Back</source>
      <translation>Înapoi</translation>
    </message>
    <message>
      <source>Go back</source>
      <translation>Mergi înapoi</translation>
    </message>
    <message>
      <source>Alt+Left</source>
      <translation>Alt+Left</translation>
    </message>
    <message>
      <source>Forward</source>
      <translation>Înainte</translation>
    </message>
    <message>
      <source>Go forward</source>
      <translation>Mergi înainte</translation>
    </message>
    <message>
      <source>Alt+Right</source>
      <translation>Alt+Right</translation>
    </message>
    <message>
      <source>Parent Directory</source>
      <translation>Dosarul superior</translation>
    </message>
    <message>
      <source>Go to the parent directory</source>
      <translation>Mergi în dosarul superior</translation>
    </message>
    <message>
      <source>Alt+Up</source>
      <translation>Alt+Up</translation>
    </message>
    <message>
      <source>Create New Folder</source>
      <translation>Creează un dosar nou</translation>
    </message>
    <message>
      <source>Create a New Folder</source>
      <translation>Creează un dosar nou</translation>
    </message>
    <message>
      <source>New Folder</source>
      <translation>Dosar nou</translation>
    </message>
    <message>
      <source>&amp;New Folder</source>
      <translation>Dosar &amp;nou</translation>
    </message>
    <message>
      <source>List View</source>
      <translation>Listă</translation>
    </message>
    <message>
      <source>Change to list view mode</source>
      <translation>Arată ca listă</translation>
    </message>
    <message>
      <source>Detail View</source>
      <translation>Detalii</translation>
    </message>
    <message>
      <source>Change to detail view mode</source>
      <translation>Arată cu detalii</translation>
    </message>
    <message>
      <source>Sidebar</source>
      <translation>Bara laterală</translation>
    </message>
    <message>
      <source>List of places and bookmarks</source>
      <translation>Lista locurilor și a semnelor de carte</translation>
    </message>
    <message>
      <source>Files</source>
      <translation>Fișiere</translation>
    </message>
    <message>
      <source>File &amp;name:</source>
      <translation>&amp;Numele fișierului:</translation>
    </message>
    <message>
      <source>Files of type:</source>
      <translation>Fișiere de tipul:</translation>
    </message>
    <message>
      <source>Directory:</source>
      <translation>Dosarul:</translation>
    </message>
    <message>
      <source>Directories</source>
      <translation>Dosare</translation>
    </message>
    <message>
      <source>Find Directory</source>
      <translation>Alege dosarul</translation>
    </message>
    <message>
      <source>Open</source>
      <translation>Deschide</translation>
    </message>
    <message>
      <source>&amp;Open</source>
      <translation>&amp;Deschide</translation>
    </message>
    <message>
      <source>&amp;Save</source>
      <translation>&amp;Salvează</translation>
    </message>
    <message>
      <source>Save As</source>
      <translation>Salvează ca</translation>
    </message>
    <message>
      <source>&amp;Choose</source>
      <translation>&amp;Alege</translation>
    </message>
    <message>
      <source>&amp;Rename</source>
      <translation>&amp;Redenumește</translation>
    </message>
    <message>
      <source>&amp;Delete</source>
      <translation>Ș&amp;terge</translation>
    </message>
    <message>
      <source>Delete</source>
      <translation>Șterge</translation>
    </message>
    <message>
      <source>Remove</source>
      <translation>Elimină</translation>
    </message>
    <message>
      <source>Show </source>
      <translation>Arată </translation>
    </message>
    <message>
      <source>Show &amp;hidden files</source>
      <translation>Arată fișierele &amp;ascunse</translation>
    </message>
    <message>
      <source>All files (*)</source>
      <translation>Toate fișierele (*)</translation>
    </message>
    <message>
      <source>All Files (*)</source>
      <translation>Toate fișierele (*)</translation>
    </message>
    <message>
      <source>Recent Places</source>
      <translation>Locuri recente</translation>
    </message>
    <message>
      <source>My Computer</source>
      <translation>Calculatorul meu</translation>
    </message>
    <message>
      <source>Drive</source>
      <translation>Unitate</translation>
    </message>
    <message>
      <source>File</source>
      <translation>Fișier</translation>
    </message>
    <message>
      <source>%1 File</source>
      <translation>Fișier %1</translation>
    </message>
    <message>
      <source>File Folder</source>
      <translation>Dosar</translation>
    </message>
    <message>
      <source>Folder</source>
      <translation>Dosar</translation>
    </message>
    <message>
      <source>Alias</source>
      <translation>Alias</translation>
    </message>
    <message>
      <source>Shortcut</source>
      <translation>Scurtătură</translation>
    </message>
    <message>
      <source>Unknown</source>
      <translation>Necunoscut</translation>
    </message>
    <message>
      <source>%1
Directory not found.
Please verify the correct directory name was given.</source>
      <translation>%1
Dosarul nu a fost găsit.
Verificați numele dosarului.</translation>
    </message>
    <message>
      <source>%1
File not found.
Please verify the correct file name was given.</source>
      <translation>%1
Fișierul nu a fost găsit.
Verificați numele fișierului.</translation>
    </message>
    <message>
      <source>%1 already exists.
Do you want to replace it?</source>
      <translation>%1 există deja.
Îl înlocuiți?</translation>
    </message>
    <message>
      <source>'%1' is write protected.
Do you want to delete it anyway?</source>
      <translation>„%1” este protejat la scriere.
Îl ștergeți totuși?</translation>
    </message>
    <message>
      <source>Are you sure you want to delete '%1'?</source>
      <translation>Sigur ștergeți „%1”?</translation>
    </message>
    <message>
      <source>Could not delete directory.</source>
      <translation>Dosarul nu a putut fi șters.</translation>
    </message>
  </context>
  <context>
    <name>QAbstractFileIconProvider</name>
    <message>
      <source>Drive</source>
      <translation>Unitate</translation>
    </message>
    <message>
      <source>File</source>
      <translation>Fișier</translation>
    </message>
    <message>
      <source>%1 File</source>
      <translation>Fișier %1</translation>
    </message>
    <message>
      <source>File Folder</source>
      <translation>Dosar</translation>
    </message>
    <message>
      <source>Folder</source>
      <translation>Dosar</translation>
    </message>
    <message>
      <source>Alias</source>
      <translation>Alias</translation>
    </message>
    <message>
      <source>Shortcut</source>
      <translation>Scurtătură</translation>
    </message>
    <message>
      <source>Unknown</source>
      <translation>Necunoscut</translation>
    </message>
  </context>
  <context>
    <name>QFileSystemModel</name>
    <message>
      <source>Name</source>
      <translation>Nume</translation>
    </message>
    <message>
      <source>Size</source>
      <translation>Mărime</translation>
    </message>
    <message>
      <source>Kind</source>
      <translation>Tip</translation>
    </message>
    <message>
      <source>Type</source>
      <translation>Tip</translation>
    </message>
    <message>
      <source>Date Modified</source>
      <translation>Data modificării</translation>
    </message>
    <message>
      <source>%1 TB</source>
      <translation>%1 TB</translation>
    </message>
    <message>
      <source>%1 GB</source>
      <translation>%1 GB</translation>
    </message>
    <message>
      <source>%1 MB</source>
      <translation>%1 MB</translation>
    </message>
    <message>
      <source>%1 KB</source>
      <translation>%1 KB</translation>
    </message>
    <message>
      <source>%1 bytes</source>
      <translation>%1 octeți</translation>
    </message>
    <message>
      <source>%1 byte(s)</source>
      <translation>%1 octeți</translation>
    </message>
    <message>
      <source>My Computer</source>
      <translation>Calculatorul meu</translation>
    </message>
    <message>
      <source>Computer</source>
      <translation>Calculator</translation>
    </message>
    <message>
      <source>Invalid filename</source>
      <translation>Nume de fișier nevalid</translation>
    </message>
    <message>
      <source>&lt;b&gt;The name &quot;%1&quot; can not be used.&lt;/b&gt;&lt;p&gt;Try using another name, with fewer characters or no punctuations marks.</source>
      <translation>&lt;b&gt;Numele „%1” nu poate fi folosit.&lt;/b&gt;&lt;p&gt;Încercați alt nume, mai scurt sau fără semne de punctuație.</translation>
    </message>
  </context>
  <context>
    <name>QPrintDialog</name>
    <message>
      <source>Print</source>
      <translation>Tipărire</translation>
    </message>
    <message>
      <source>&amp;Print</source>
      <translation>&amp;Tipărește</translation>
    </message>
    <message>
      <source>OK</source>
      <translation>OK</translation>
    </message>
    <message>
      <source>&amp;Options &gt;&gt;</source>
      <translation>&amp;Opțiuni &gt;&gt;</translation>
    </message>
    <message>
      <source>&amp;Options &lt;&lt;</source>
      <translation>&amp;Opțiuni &lt;&lt;</translation>
    </message>
    <message>
      <source>Print to File (PDF)</source>
      <translation>Tipărire în fișier (PDF)</translation>
    </message>
    <message>
      <source>Print To File ...</source>
      <translation>Tipărire în fișier…</translation>
    </message>
    <message>
      <source>Local file</source>
      <translation>Fișier local</translation>
    </message>
    <message>
      <source>Write PDF file</source>
      <translation>Scrie un fișier PDF</translation>
    </message>
    <message>
      <source>All Pages</source>
      <translation>Toate paginile</translation>
    </message>
    <message>
      <source>Odd Pages</source>
      <translation>Paginile impare</translation>
    </message>
    <message>
      <source>Even Pages</source>
      <translation>Paginile pare</translation>
    </message>
    <message>
      <source>Automatic</source>
      <translation>Automat</translation>
    </message>
    <message>
      <source>Custom</source>
      <translation>Personalizat</translation>
    </message>
    <message>
      <source>Left to Right, Top to Bottom</source>
      <translation>De la stânga la dreapta, de sus în jos</translation>
    </message>
    <message>
      <source>Left to Right, Bottom to Top</source>
      <translation>De la stânga la dreapta, de jos în sus</translation>
    </message>
    <message>
      <source>Right to Left, Top to Bottom</source>
      <translation>De la dreapta la stânga, de sus în jos</translation>
    </message>
    <message>
      <source>Right to Left, Bottom to Top</source>
      <translation>De la dreapta la stânga, de jos în sus</translation>
    </message>
    <message>
      <source>Bottom to Top, Left to Right</source>
      <translation>De jos în sus, de la stânga la dreapta</translation>
    </message>
    <message>
      <source>Bottom to Top, Right to Left</source>
      <translation>De jos în sus, de la dreapta la stânga</translation>
    </message>
    <message>
      <source>Top to Bottom, Left to Right</source>
      <translation>De sus în jos, de la stânga la dreapta</translation>
    </message>
    <message>
      <source>Top to Bottom, Right to Left</source>
      <translation>De sus în jos, de la dreapta la stânga</translation>
    </message>
    <message>
      <source>1 (1x1)</source>
      <translation>1 (1x1)</translation>
    </message>
    <message>
      <source>2 (2x1)</source>
      <translation>2 (2x1)</translation>
    </message>
    <message>
      <source>4 (2x2)</source>
      <translation>4 (2x2)</translation>
    </message>
    <message>
      <source>6 (2x3)</source>
      <translation>6 (2x3)</translation>
    </message>
    <message>
      <source>9 (3x3)</source>
      <translation>9 (3x3)</translation>
    </message>
    <message>
      <source>16 (4x4)</source>
      <translation>16 (4x4)</translation>
    </message>
    <message>
      <source>The 'From' value cannot be greater than the 'To' value.</source>
      <translation>Prima pagină nu poate fi după ultima pagină.</translation>
    </message>
    <message>
      <source>Invalid Pages Definition</source>
      <translation>Pagini greșit scrise</translation>
    </message>
    <message>
      <source>%1 does not follow the correct syntax. Please use ',' to separate ranges and pages, '-' to define ranges and make sure ranges do not intersect with each other.</source>
      <translation>„%1” nu este scris corect. Despărțiți paginile prin „,”, scrieți intervalele cu „-” și nu repetați pagini.</translation>
    </message>
    <message>
      <source>Duplex Settings Conflicts</source>
      <translation>Setări față-verso nepotrivite</translation>
    </message>
    <message>
      <source>There are conflicts in duplex settings. Do you want to fix them?</source>
      <translation>Setările față-verso nu se potrivesc între ele. Le corectați?</translation>
    </message>
    <message>
      <source>Options 'Pages Per Sheet' and 'Page Set' cannot be used together.
Please turn one of those options off.</source>
      <translation>Opțiunile „Pagini pe foaie” și „Setul de pagini” nu merg împreună.
Renunțați la una dintre ele.</translation>
    </message>
    <message>
      <source>%1 already exists.
Do you want to overwrite it?</source>
      <translation>%1 există deja.
Îl înlocuiți?</translation>
    </message>
    <message>
      <source>%1 is a directory.
Please choose a different file name.</source>
      <translation>%1 este un dosar.
Alegeți alt nume.</translation>
    </message>
    <message>
      <source>File %1 is not writable.
Please choose a different file name.</source>
      <translation>Fișierul %1 nu poate fi scris.
Alegeți alt nume.</translation>
    </message>
  </context>
  <context>
    <name>QPrintWidget</name>
    <message>
      <source>Form</source>
      <translation>Formular</translation>
    </message>
    <message>
      <source>Printer</source>
      <translation>Imprimantă</translation>
    </message>
    <message>
      <source>&amp;Name:</source>
      <translation>&amp;Nume:</translation>
    </message>
    <message>
      <source>P&amp;roperties</source>
      <translation>P&amp;roprietăți</translation>
    </message>
    <message>
      <source>Location:</source>
      <translation>Locul:</translation>
    </message>
    <message>
      <source>Preview</source>
      <translation>Previzualizare</translation>
    </message>
    <message>
      <source>Type:</source>
      <translation>Tipul:</translation>
    </message>
    <message>
      <source>Output &amp;file:</source>
      <translation>&amp;Fișierul:</translation>
    </message>
    <message>
      <source>...</source>
      <translation>…</translation>
    </message>
  </context>
  <context>
    <name>QPrintSettingsOutput</name>
    <message>
      <source>Form</source>
      <translation>Formular</translation>
    </message>
    <message>
      <source>Copies</source>
      <translation>Exemplare</translation>
    </message>
    <message>
      <source>Print range</source>
      <translation>Pagini de tipărit</translation>
    </message>
    <message>
      <source>Print all</source>
      <translation>Toate</translation>
    </message>
    <message>
      <source>Pages from</source>
      <translation>Paginile de la</translation>
    </message>
    <message>
      <source>to</source>
      <translation>până la</translation>
    </message>
    <message>
      <source>Pages</source>
      <translation>Paginile</translation>
    </message>
    <message>
      <source>Specify pages or ranges separated by commas. Ranges are specified by two numbers separated by a hyphen. E.g: 3,5-7,9 prints pages 3, 5, 6, 7 and 9.</source>
      <translation>Pagini sau intervale despărțite prin virgule; un interval se scrie cu liniuță. De exemplu, 3,5-7,9 tipărește paginile 3, 5, 6, 7 și 9.</translation>
    </message>
    <message>
      <source>Current Page</source>
      <translation>Pagina curentă</translation>
    </message>
    <message>
      <source>Selection</source>
      <translation>Selecția</translation>
    </message>
    <message>
      <source>Output Settings</source>
      <translation>Ieșirea</translation>
    </message>
    <message>
      <source>Page Set:</source>
      <translation>Setul de pagini:</translation>
    </message>
    <message>
      <source>Copies:</source>
      <translation>Exemplare:</translation>
    </message>
    <message>
      <source>Collate</source>
      <translation>Asamblează</translation>
    </message>
    <message>
      <source>Reverse</source>
      <translation>În ordine inversă</translation>
    </message>
    <message>
      <source>Options</source>
      <translation>Opțiuni</translation>
    </message>
    <message>
      <source>Color Mode</source>
      <translation>Culori</translation>
    </message>
    <message>
      <source>Color</source>
      <translation>Color</translation>
    </message>
    <message>
      <source>Grayscale</source>
      <translation>Tonuri de gri</translation>
    </message>
    <message>
      <source>Duplex Printing</source>
      <translation>Tipărire față-verso</translation>
    </message>
    <message>
      <source>None</source>
      <translation>Fără</translation>
    </message>
    <message>
      <source>Long side</source>
      <translation>Pe latura lungă</translation>
    </message>
    <message>
      <source>Short side</source>
      <translation>Pe latura scurtă</translation>
    </message>
    <message>
      <source>Double Sided Printing</source>
      <translation>Tipărire față-verso</translation>
    </message>
    <message>
      <source>Off</source>
      <translation>Fără</translation>
    </message>
    <message>
      <source>Long side binding</source>
      <translation>Pe latura lungă</translation>
    </message>
    <message>
      <source>Short side binding</source>
      <translation>Pe latura scurtă</translation>
    </message>
  </context>
  <context>
    <name>QLineEdit</name>
    <message>
      <source>&amp;Undo</source>
      <translation>&amp;Anulează</translation>
    </message>
    <message>
      <source>&amp;Redo</source>
      <translation>&amp;Refă</translation>
    </message>
    <message>
      <source>Cu&amp;t</source>
      <translation>&amp;Decupează</translation>
    </message>
    <message>
      <source>&amp;Copy</source>
      <translation>&amp;Copiază</translation>
    </message>
    <message>
      <source>&amp;Paste</source>
      <translation>&amp;Lipește</translation>
    </message>
    <message>
      <source>Delete</source>
      <translation>Șterge</translation>
    </message>
    <message>
      <source>Select All</source>
      <translation>Selectează tot</translation>
    </message>
  </context>
  <context>
    <name>QWidgetTextControl</name>
    <message>
      <source>&amp;Undo</source>
      <translation>&amp;Anulează</translation>
    </message>
    <message>
      <source>&amp;Redo</source>
      <translation>&amp;Refă</translation>
    </message>
    <message>
      <source>Cu&amp;t</source>
      <translation>&amp;Decupează</translation>
    </message>
    <message>
      <source>&amp;Copy</source>
      <translation>&amp;Copiază</translation>
    </message>
    <message>
      <source>Copy &amp;Link Location</source>
      <translation>Copiază &amp;legătura</translation>
    </message>
    <message>
      <source>&amp;Paste</source>
      <translation>&amp;Lipește</translation>
    </message>
    <message>
      <source>Delete</source>
      <translation>Șterge</translation>
    </message>
    <message>
      <source>Select All</source>
      <translation>Selectează tot</translation>
    </message>
  </context>
  <context>
    <name>QAbstractSpinBox</name>
    <message>
      <source>&amp;Select All</source>
      <translation>&amp;Selectează tot</translation>
    </message>
    <message>
      <source>&amp;Step up</source>
      <translation>&amp;Mărește</translation>
    </message>
    <message>
      <source>Step &amp;down</source>
      <translation>Mi&amp;cșorează</translation>
    </message>
  </context>
  <context>
    <name>QComboBox</name>
    <message>
      <source>Open the combo box selection popup</source>
      <translation>Deschide lista</translation>
    </message>
    <message>
      <source>True</source>
      <translation>Adevărat</translation>
    </message>
    <message>
      <source>False</source>
      <translation>Fals</translation>
    </message>
  </context>
  <context>
    <name>QTabBar</name>
    <message>
      <source>Scroll Left</source>
      <translation>Derulează la stânga</translation>
    </message>
    <message>
      <source>Scroll Right</source>
      <translation>Derulează la dreapta</translation>
    </message>
  </context>
  <context>
    <name>QScrollBar</name>
    <message>
      <source>Scroll here</source>
      <translation>Derulează aici</translation>
    </message>
    <message>
      <source>Left edge</source>
      <translation>Marginea stângă</translation>
    </message>
    <message>
      <source>Top</source>
      <translation>Sus</translation>
    </message>
    <message>
      <source>Right edge</source>
      <translation>Marginea dreaptă</translation>
    </message>
    <message>
      <source>Bottom</source>
      <translation>Jos</translation>
    </message>
    <message>
      <source>Page left</source>
      <translation>O pagină la stânga</translation>
    </message>
    <message>
      <source>Page up</source>
      <translation>O pagină în sus</translation>
    </message>
    <message>
      <source>Page right</source>
      <translation>O pagină la dreapta</translation>
    </message>
    <message>
      <source>Page down</source>
      <translation>O pagină în jos</translation>
    </message>
    <message>
      <source>Scroll left</source>
      <translation>Derulează la stânga</translation>
    </message>
    <message>
      <source>Scroll up</source>
      <translation>Derulează în sus</translation>
    </message>
    <message>
      <source>Scroll right</source>
      <translation>Derulează la dreapta</translation>
    </message>
    <message>
      <source>Scroll down</source>
      <translation>Derulează în jos</translation>
    </message>
  </context>
  <context>
    <name>QShortcut</name>
    <message>
      <source>Ctrl</source>
      <translation>Ctrl</translation>
    </message>
    <message>
      <source>Shift</source>
      <translation>Shift</translation>
    </message>
    <message>
      <source>Alt</source>
      <translation>Alt</translation>
    </message>
    <message>
      <source>Del</source>
      <translation>Del</translation>
    </message>
    <message>
      <source>Ins</source>
      <translation>Ins</translation>
    </message>
    <message>
      <source>Backspace</source>
      <translation>Backspace</translation>
    </message>
    <message>
      <source>Left</source>
      <translation>Stânga</translation>
    </message>
    <message>
      <source>Right</source>
      <translation>Dreapta</translation>
    </message>
    <message>
      <source>Up</source>
      <translation>Sus</translation>
    </message>
    <message>
      <source>Down</source>
      <translation>Jos</translation>
    </message>
  </context>
</TS>
