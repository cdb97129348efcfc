<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
  <name>Localizable</name>
  <message><source>About Velkor Tidemark</source><translation>À propos de Velkor Tidemark</translation></message>
  <message><source>Finds text in many files at once and replaces it in place.</source><translation>Recherche un texte dans de nombreux fichiers à la fois et le remplace sur place.</translation></message>
  <message><source>&amp;Undo</source><translation>&amp;Annuler</translation></message>
  <message><source>&amp;Redo</source><translation>&amp;Rétablir</translation></message>
  <message><source>Cu&amp;t</source><translation>&amp;Couper</translation></message>
  <message><source>&amp;Copy</source><translation>Co&amp;pier</translation></message>
  <message><source>&amp;Paste</source><translation>C&amp;oller</translation></message>
  <message><source>&amp;Delete</source><translation>&amp;Supprimer</translation></message>
  <message><source>Select &amp;All</source><translation>&amp;Tout sélectionner</translation></message>
  <message><source>Pre&amp;ferences…</source><translation>Pré&amp;férences…</translation></message>
  <message><source>&amp;Edit</source><translation>É&amp;dition</translation></message>
  <message><source>IDS_HelpFolder</source><translation>fr</translation></message>
  <message><source>Velkor Tidemark Help</source><translation>Aide de Velkor Tidemark</translation></message>
  <message><source>Not found</source><translation>Introuvable</translation></message>
  <message><source>The filter is empty: no file will match.</source><translation>Le filtre est vide : aucun fichier ne correspondra.</translation></message>
  <message><source>“%@” is not a known type: no file will match.</source><translation>« %@ » n’est pas un type connu : aucun fichier ne correspondra.</translation></message>
  <message><source>A pattern is compared with file names, which never contain “/”: no file will match.</source><translation>Un motif est comparé aux noms de fichiers, qui ne contiennent jamais « / » : aucun fichier ne correspondra.</translation></message>
  <message><source>Neither a type nor a pattern: only files named exactly “%@” will match.</source><translation>Ni un type ni un motif : seuls les fichiers nommés exactement « %@ » correspondront.</translation></message>
  <message><source>Filter</source><translation>Filtre</translation></message>
  <message><source>Do you want to restore the original list of kinds?</source><translation>Voulez-vous rétablir la liste d’origine des catégories de fichiers ?</translation></message>
  <message><source>Kinds that you added or changed will be lost.</source><translation>Les catégories que vous avez ajoutées ou modifiées seront perdues.</translation></message>
  <message><source>Restore</source><translation>Rétablir</translation></message>
  <message><source>Cancel</source><translation>Annuler</translation></message>
  <message><source>Kind</source><translation>Catégorie</translation></message>
  <message><source>&amp;File</source><translation>&amp;Fichier</translation></message>
  <message><source>&amp;New Window</source><translation>&amp;Nouvelle fenêtre</translation></message>
  <message><source>&amp;Quit</source><translation>&amp;Quitter</translation></message>
  <message><source>&amp;Search</source><translation>&amp;Recherche</translation></message>
  <message><source>&amp;Results</source><translation>Ré&amp;sultats</translation></message>
  <message><source>&amp;Help</source><translation>&amp;Aide</translation></message>
  <message><source>Velkor Tidemark &amp;Help</source><translation>&amp;Aide de Velkor Tidemark</translation></message>
  <message><source>Frequently Asked &amp;Questions</source><translation>&amp;Questions fréquentes</translation></message>
  <message><source>Overview for &amp;New Users</source><translation>Présentation pour les &amp;nouveaux utilisateurs</translation></message>
  <message><source>&amp;Tidemark Home Page</source><translation>Site web de &amp;Tidemark</translation></message>
  <message><source>&amp;Velkor Home Page</source><translation>Site web de &amp;Velkor</translation></message>
  <message><source>&amp;About Velkor Tidemark</source><translation>À &amp;propos de Velkor Tidemark</translation></message>
  <message><source>Continue Replace and Don‘t Quit</source><translation>Continuer le remplacement sans quitter</translation></message>
  <message><source>Stop Replace and Quit</source><translation>Arrêter le remplacement et quitter</translation></message>
  <message><source>IDS_ProductVersion</source><translation>Version %@</translation></message>
  <message><source>IDS_ProductNameAndVersion</source><translation>Velkor Tidemark %@</translation></message>
  <message><source>Files in this encoding are recognised, but it cannot be the default.</source><translation>Les fichiers dans cet encodage sont reconnus, mais il ne peut pas être l’encodage par défaut.</translation></message>
  <message><source>No usable encoding is chosen: files whose encoding is not detected cannot be read.</source><translation>Aucun encodage utilisable n’est choisi : les fichiers dont l’encodage n’est pas détecté ne peuvent pas être lus.</translation></message>
  <message><source>For files whose encoding is not detected, and for all files while detection is off.</source><translation>Pour les fichiers dont l’encodage n’est pas détecté, et pour tous les fichiers quand la détection est désactivée.</translation></message>
  <message><source>&amp;Window</source><translation>Fe&amp;nêtre</translation></message>
  <message><source>&amp;Minimize</source><translation>&amp;Réduire</translation></message>
  <message><source>&amp;Zoom</source><translation>&amp;Zoom</translation></message>
  <message><source>For assistance, please contact Velkor via the Velkor website.</source><translation>Pour obtenir de l’aide, veuillez contacter Velkor par son site web.</translation></message>
  <message><source>Review the regular expression in the find text field and ensure it is valid. Or uncheck the Regular expression checkbox if you want to perform a normal text search.</source><translation>Vérifiez que l’expression régulière du champ de recherche est valide. Ou décochez la case « Expression régulière » pour faire une recherche de texte ordinaire.</translation></message>
  <message><source>Review the regular expression in the find text field and ensure it is valid.  Or uncheck the Regular expression checkbox if you want to perform a normal text search.</source><translation>Vérifiez que l’expression régulière du champ de recherche est valide. Ou décochez la case « Expression régulière » pour faire une recherche de texte ordinaire.</translation></message>
  <message><source>Review the find and replace text fields and ensure they are valid. Or uncheck the Regular expression checkbox if you want to perform a normal text search.</source><translation>Vérifiez que le texte recherché et le texte de remplacement sont valides. Ou décochez la case « Expression régulière » pour faire une recherche de texte ordinaire.</translation></message>
  <message><source>Review the find and replace text fields and ensure they are valid.  Or uncheck the Regular expression checkbox if you want to perform a normal text search.</source><translation>Vérifiez que le texte recherché et le texte de remplacement sont valides. Ou décochez la case « Expression régulière » pour faire une recherche de texte ordinaire.</translation></message>
  <message><source>Sorry, a problem occured whilst attempting to search using the regular expression ‘%@’.</source><translation>Désolé, un problème est survenu lors de la recherche avec l’expression régulière « %@ ».</translation></message>
  <message><source>The find text regular expression is malformed.</source><translation>L’expression régulière du texte recherché est mal formée.</translation></message>
  <message><source>The find text regular expression caused an internal error.</source><translation>L’expression régulière du texte recherché a provoqué une erreur interne.</translation></message>
  <message><source>Sorry, it was not possible to search file ‘%@’.</source><translation>Désolé, il n’a pas été possible d’effectuer la recherche dans le fichier « %@ ».</translation></message>
  <message><source>Search results cannot be shown and replacements will not occur for this file as it contains lines of excessive length.</source><translation>Les résultats ne peuvent pas être affichés et aucun remplacement n’aura lieu dans ce fichier, car il contient des lignes d’une longueur excessive.</translation></message>
  <message><source>Sorry, a problem occured whilst attempting to open file ‘%@’.</source><translation>Désolé, un problème est survenu à l’ouverture du fichier « %@ ».</translation></message>
  <message><source>You do not have permission to open the file.</source><translation>Vous n’avez pas l’autorisation d’ouvrir ce fichier.</translation></message>
  <message><source>It is a device, a pipe or a socket, and only files can be searched.</source><translation>C’est un périphérique, un tube ou un socket ; la recherche ne porte que sur des fichiers.</translation></message>
  <message><source>Error %d occured.</source><translation>L’erreur %d s’est produite.</translation></message>
  <message><source>Sorry, a problem occured whilst attempting to read a file.</source><translation>Désolé, un problème est survenu à la lecture d’un fichier.</translation></message>
  <message><source>The chosen character encoding ‘%@’ is unable to read the contents of the file. Check in Preferences that the default character encoding is appropriate for this file.</source><translation>L’encodage choisi « %@ » ne permet pas de lire le contenu du fichier. Vérifiez dans les préférences que l’encodage par défaut convient à ce fichier.</translation></message>
  <message><source>An error occurred while closing ‘%@’.</source><translation>Une erreur est survenue à la fermeture de « %@ ».</translation></message>
  <message><source>Sorry, a problem occured whilst attempting to modify a file.</source><translation>Désolé, un problème est survenu lors de la modification d’un fichier.</translation></message>
  <message><source>Sorry, a problem occured whilst attempting to modify a file. You will need to restore the file from the automatic backup that was created.</source><translation>Désolé, un problème est survenu lors de la modification d’un fichier. Vous devrez restaurer le fichier à partir de la sauvegarde automatique qui a été créée.</translation></message>
  <message><source>Perform the search again to refresh the search results.</source><translation>Relancez la recherche pour actualiser les résultats.</translation></message>
  <message><source>To restore the file use Finder to copy file ‘%@’ to file ‘%@’. Afterwards delete the backup file.</source><translation>Pour restaurer le fichier, copiez dans le gestionnaire de fichiers le fichier « %@ » à la place du fichier « %@ ». Supprimez ensuite la sauvegarde.</translation></message>
  <message><source>Creating a temporary file for ‘%@’ was not possible due to the file permissions of the parent folder being too restrictive.</source><translation>Impossible de créer un fichier temporaire pour « %@ » : les permissions du dossier parent sont trop restrictives.</translation></message>
  <message><source>Change permissions on the parent folder for the above mentioned file such that it is permissible to create new files in the folder.</source><translation>Modifiez les permissions du dossier parent du fichier mentionné ci-dessus de façon à autoriser la création de fichiers dans ce dossier.</translation></message>
  <message><source>Creating the temporary backup file for ‘%@’ gave error number ‘%d’.</source><translation>La création du fichier de sauvegarde temporaire pour « %@ » a donné l’erreur numéro « %d ».</translation></message>
  <message><source>Copying file ‘%@’ to '%@' gave error number ‘%d’.</source><translation>La copie du fichier « %@ » vers « %@ » a donné l’erreur numéro « %d ».</translation></message>
  <message><source>Deleting temporary backup file ‘%@’ gave error number ‘%d’.</source><translation>La suppression du fichier de sauvegarde temporaire « %@ » a donné l’erreur numéro « %d ».</translation></message>
  <message><source>The file ‘%@’ does not exist.</source><translation>Le fichier « %@ » n’existe pas.</translation></message>
  <message><source>The modification date for file ‘%@’ could not be retrieved.</source><translation>La date de modification du fichier « %@ » n’a pas pu être obtenue.</translation></message>
  <message><source>File ‘%@’ has been modified outside of this application.</source><translation>Le fichier « %@ » a été modifié en dehors de cette application.</translation></message>
  <message><source>A file handler could not be opened to truncate file ‘%@’.</source><translation>Le fichier « %@ » n’a pas pu être ouvert pour être tronqué.</translation></message>
  <message><source>An error occured whilst truncating file‘%@’ to zero bytes.</source><translation>Une erreur est survenue en tronquant le fichier « %@ » à zéro octet.</translation></message>
  <message><source>An error occured whilst attempting to close the file handler for truncated file ‘%@’.</source><translation>Une erreur est survenue à la fermeture du fichier tronqué « %@ ».</translation></message>
  <message><source>Writing data to file ‘%@’ failed with exception '%@'.</source><translation>L’écriture dans le fichier « %@ » a échoué avec l’exception « %@ ».</translation></message>
  <message><source>File permissions on file ‘%@’ do not allow the file to be modified.</source><translation>Les permissions du fichier « %@ » ne permettent pas de le modifier.</translation></message>
  <message><source>Change permissions of the file or folder path such that it is permissible to update the file.</source><translation>Modifiez les permissions du fichier ou des dossiers de son chemin de façon à autoriser la modification du fichier.</translation></message>
  <message><source>Sorry, a problem occured whilst attempting to replace using the find text regular expression and replace text format string.</source><translation>Désolé, un problème est survenu lors du remplacement avec l’expression régulière du texte recherché et la chaîne de format du texte de remplacement.</translation></message>
  <message><source>The find text regular expression and/or replace text format string are malformed.</source><translation>L’expression régulière du texte recherché et/ou la chaîne de format du texte de remplacement sont mal formées.</translation></message>
  <message><source>The find text regular expression and/or replace text format string caused an internal error.</source><translation>L’expression régulière du texte recherché et/ou la chaîne de format du texte de remplacement ont provoqué une erreur interne.</translation></message>
  <message><source>

Too many files to list.</source><translation>

Trop de fichiers pour les énumérer.</translation></message>
  <message><source>Sorry, it was not possible to update the following files due to file permissions or locks:</source><translation>Désolé, il n’a pas été possible de modifier les fichiers suivants à cause de leurs permissions ou de verrous :</translation></message>
  <message><source>Review the permissions, ownership and lock status of the above files and peform the search and replace again.</source><translation>Vérifiez les permissions, le propriétaire et les verrous des fichiers ci-dessus, puis relancez la recherche et le remplacement.</translation></message>
  <message><source>IDS_Any</source><translation>Tout fichier</translation></message>
  <message><source>IDS_Text</source><translation>Texte</translation></message>
  <message><source>IDS_Documents</source><translation>Documents</translation></message>
  <message><source>IDS_SourceCode</source><translation>Code source</translation></message>
  <message><source>IDS_WildcardSample1</source><translation>Fichiers en texte brut (exemple)</translation></message>
  <message><source>IDS_WildcardSample1Uti</source><translation>*.txt</translation></message>
  <message><source>IDS_WildcardSample2</source><translation>Sources et en-têtes C (exemple)</translation></message>
  <message><source>IDS_WildcardSample2Uti</source><translation>*.[ch]</translation></message>
  <message><source>Add Files and Folders to Search</source><translation>Ajouter des fichiers et dossiers à la recherche</translation></message>
  <message><source>Add</source><translation>Ajouter</translation></message>
  <message><source>, </source><translation>, </translation></message>
  <message><source>Continue Replace and Don‘t Close Window</source><translation>Continuer le remplacement sans fermer la fenêtre</translation></message>
  <message><source>Stop Replace and Close Window</source><translation>Arrêter le remplacement et fermer la fenêtre</translation></message>
  <message><source>Start Search</source><translation>Lancer la recherche</translation></message>
  <message><source>Stop Search</source><translation>Arrêter la recherche</translation></message>
  <message><source>Locate a file or folder to search. (Cmd+O)</source><translation>Choisir un fichier ou un dossier où chercher. (Ctrl+O)</translation></message>
  <message><source>Remove the selected file or folder from the search. (Cmd+P)</source><translation>Retirer de la recherche le fichier ou dossier sélectionné. (Ctrl+P)</translation></message>
  <message><source>Select kinds of files to include in search. (Cmd+F)</source><translation>Choisir les catégories de fichiers à inclure dans la recherche. (Ctrl+F)</translation></message>
  <message><source>Enter text to find</source><translation>Saisir le texte à rechercher</translation></message>
  <message><source>Enter text that replaces the find text</source><translation>Saisir le texte qui remplace le texte recherché</translation></message>
  <message><source>Start or stop the search. (Cmd+Enter)</source><translation>Lancer ou arrêter la recherche. (Ctrl+Entrée)</translation></message>
  <message><source>Check to see what each match would become in the search results. (Cmd+Shift+R)</source><translation>Cocher pour voir dans les résultats ce que deviendrait chaque occurrence. (Ctrl+Maj+R)</translation></message>
  <message><source>S&amp;how Replacements</source><translation>A&amp;fficher les remplacements</translation></message>
  <message><source>Show replacements</source><translation>Afficher les remplacements</translation></message>
  <message><source>Check to perform case sensitive searching. (Cmd+C)</source><translation>Cocher pour ignorer la casse pendant la recherche. (Ctrl+C)</translation></message>
  <message><source>Check to use regular expressions in find text. (Cmd+G)</source><translation>Cocher pour utiliser des expressions régulières dans le texte recherché. (Ctrl+G)</translation></message>
  <message><source>Replace the currently highlighed match in the search results with the replace text. (Cmd+R)</source><translation>Remplacer l’occurrence en surbrillance dans les résultats par le texte de remplacement. (Ctrl+R)</translation></message>
  <message><source>Replace the currently highlighed match in the search results with the replace text and move to the next match. (Cmd+X)</source><translation>Remplacer l’occurrence en surbrillance dans les résultats par le texte de remplacement et passer à la suivante. (Ctrl+X)</translation></message>
  <message><source>Replace the currently selected matches in the search results with the replace text. (Cmd+S)</source><translation>Remplacer les occurrences sélectionnées dans les résultats par le texte de remplacement. (Ctrl+S)</translation></message>
  <message><source>Replace all the matches in the search results with the replace text. (Cmd+L)</source><translation>Remplacer toutes les occurrences des résultats par le texte de remplacement. (Ctrl+L)</translation></message>
  <message><source>Highlight the previous match in the search results. (Up; Cmd+Up to move to the first match in previous file)</source><translation>Mettre en surbrillance l’occurrence précédente dans les résultats. (Haut ; Ctrl+Haut pour aller à la première occurrence du fichier précédent)</translation></message>
  <message><source>Highlight the next match in the search results. (Down; Cmd+Down to move to the first match in next file)</source><translation>Mettre en surbrillance l’occurrence suivante dans les résultats. (Bas ; Ctrl+Bas pour aller à la première occurrence du fichier suivant)</translation></message>
  <message><source>Remove selected items from search results. (Delete)</source><translation>Retirer des résultats les éléments sélectionnés. (Suppr)</translation></message>
  <message><source>Expand or collapse all matches to either show or hide all matches. (Cmd+E)</source><translation>Tout développer ou réduire pour afficher ou masquer toutes les occurrences. (Ctrl+E)</translation></message>
  <message><source>Files and folders to search</source><translation>Fichiers et dossiers où chercher</translation></message>
  <message><source>Search results showing lines of files with matches</source><translation>Résultats montrant les lignes des fichiers qui contiennent des occurrences</translation></message>
  <message><source> (no longer exists)</source><translation> (n’existe plus)</translation></message>
  <message><source>This operation cannot easily be undone.</source><translation>Cette opération ne peut pas être facilement annulée.</translation></message>
  <message><source>No match is selected, so nothing will change.</source><translation>Aucune occurrence n’est sélectionnée : rien ne changera.</translation></message>
  <message><source>These matches were replaced already, so nothing will change.</source><translation>Ces occurrences sont déjà remplacées : rien ne changera.</translation></message>
  <message><source>%@ in %@ will change.</source><translation>Modification à venir : %@ dans %@.</translation></message>
  <message><source>Find text: ‘%@’</source><translation>Texte recherché : « %@ »</translation></message>
  <message><source>Replace text: ‘%@’</source><translation>Texte de remplacement : « %@ »</translation></message>
  <message><source>These results were found with ‘%@’.</source><translation>Ces résultats ont été trouvés avec « %@ ».</translation></message>
  <message><source>‘%@’ was changed since the search.</source><translation>« %@ » a changé depuis la recherche.</translation></message>
  <message><source>Matches that the find text doesn’t fit will stay as they are.</source><translation>Les occurrences auxquelles le texte recherché ne correspond pas resteront telles quelles.</translation></message>
  <message><source>%@ match will stay as it is.</source><translation>%@ occurrence restera telle quelle.</translation></message>
  <message><source>%@ matches will stay as they are.</source><translation>%@ occurrences resteront telles quelles.</translation></message>
  <message><source>%lu match</source><translation>%lu occurrence</translation></message>
  <message><source>%lu matches</source><translation>%lu occurrences</translation></message>
  <message><source>%lu file</source><translation>%lu fichier</translation></message>
  <message><source>%lu files</source><translation>%lu fichiers</translation></message>
  <message><source>The replace text is empty: the matches will be deleted.</source><translation>Le texte de remplacement est vide : les occurrences seront supprimées.</translation></message>
  <message><source>Replace all selected occurrences of the find text with the replace text?</source><translation>Remplacer toutes les occurrences sélectionnées du texte recherché par le texte de remplacement ?</translation></message>
  <message><source>Replace Selection</source><translation>Remplacer la sélection</translation></message>
  <message><source>Do not show this message again</source><translation>Ne plus afficher ce message</translation></message>
  <message><source>Replace all occurrences of the find text with the replace text in all files listed in the search results?</source><translation>Remplacer toutes les occurrences du texte recherché par le texte de remplacement dans tous les fichiers des résultats ?</translation></message>
  <message><source>Replace All</source><translation>Tout remplacer</translation></message>
  <message><source>Open</source><translation>Ouvrir</translation></message>
  <message><source>Reveal in Finder</source><translation>Afficher dans le gestionnaire de fichiers</translation></message>
  <message><source>Copy Line</source><translation>Copier la ligne</translation></message>
  <message><source>Copy Path</source><translation>Copier le chemin</translation></message>
  <message><source>Replacing: %d of %d files done</source><translation>Remplacement : %d fichiers sur %d traités</translation></message>
  <message><source>Undoing: %d of %d files done</source><translation>Annulation : %d fichiers sur %d traités</translation></message>
  <message><source>Redoing: %d of %d files done</source><translation>Rétablissement : %d fichiers sur %d traités</translation></message>
  <message><source>Replacing stopped: %@ of %@ files done</source><translation>Remplacement arrêté : %@ fichiers sur %@ traités</translation></message>
  <message><source>Replaced %@ match</source><translation>%@ occurrence remplacée</translation></message>
  <message><source>Replaced %@ matches</source><translation>%@ occurrences remplacées</translation></message>
  <message><source> in %@ file</source><translation> dans %@ fichier</translation></message>
  <message><source> in %@ files</source><translation> dans %@ fichiers</translation></message>
  <message><source>%@ match stayed as it was</source><translation>%@ occurrence inchangée</translation></message>
  <message><source>%@ matches stayed as they were</source><translation>%@ occurrences inchangées</translation></message>
  <message><source>%@ file failed</source><translation>%@ fichier en échec</translation></message>
  <message><source>Undo</source><translation>Annuler</translation></message>
  <message><source>Redo</source><translation>Rétablir</translation></message>
  <message><source>Show Fai&amp;lures</source><translation>Montrer les éc&amp;hecs</translation></message>
  <message><source>This replacement is being undone elsewhere.</source><translation>Ce remplacement est en train d’être annulé ailleurs.</translation></message>
  <message><source>Redone in %@ file</source><translation>Rétabli dans %@ fichier</translation></message>
  <message><source>Redone in %@ files</source><translation>Rétabli dans %@ fichiers</translation></message>
  <message><source>This replacement was undone already, or isn't kept any more.</source><translation>Ce remplacement a déjà été annulé ou n’est plus conservé.</translation></message>
  <message><source>Undo the Whole Run</source><translation>Annuler tout le remplacement</translation></message>
  <message><source>Undoing the whole run puts every file that it changed (%@) back as it was before.</source><translation>Annuler tout le remplacement remet tous les fichiers modifiés (%@) dans leur état précédent.</translation></message>
  <message><source>%@ of %@ replaced</source><translation>%@ sur %@ remplacées</translation></message>
  <message><source>%@ cannot hold ‘%@’</source><translation>%@ ne peut pas contenir « %@ »</translation></message>
  <message><source>The expression takes too long to show what becomes of its matches</source><translation>L’expression prend trop de temps pour montrer ce que deviennent ses occurrences</translation></message>
  <message><source>%@ files failed</source><translation>%@ fichiers en échec</translation></message>
  <message><source>Files that failed</source><translation>Fichiers en échec</translation></message>
  <message><source>old content in %@</source><translation>ancien contenu dans %@</translation></message>
  <message><source>%@ (%@):</source><translation>%@ (%@) :</translation></message>
  <message><source>Error: %@</source><translation>Erreur : %@</translation></message>
  <message><source>Lines with matches will appear here.</source><translation>Les lignes contenant des occurrences apparaîtront ici.</translation></message>
  <message><source>No matches found.
Kinds of files searched in folders: %@</source><translation>Aucune occurrence trouvée.
Catégories de fichiers recherchées dans les dossiers : %@</translation></message>
  <message><source>Name</source><translation>Nom</translation></message>
  <message><source>Matches</source><translation>Occurrences</translation></message>
  <message><source>Folder</source><translation>Dossier</translation></message>
  <message><source>Generating search results…</source><translation>Préparation des résultats…</translation></message>
  <message><source>Review search results</source><translation>Examiner les résultats</translation></message>
  <message><source>Drop files and folders here, or press + to add them.</source><translation>Déposez ici des fichiers et dossiers, ou ajoutez-les avec +.</translation></message>
  <message><source>%d match found in %d file</source><translation>%d occurrence trouvée dans %d fichier</translation></message>
  <message><source>%d matches found in %d files</source><translation>%d occurrences trouvées dans %d fichiers</translation></message>
  <message><source>%d matches found in %d file</source><translation>%d occurrences trouvées dans %d fichier</translation></message>
  <message><source> • </source><translation> • </translation></message>
  <message><source>%d files searched</source><translation>%d fichiers parcourus</translation></message>
  <message><source>%d file searched</source><translation>%d fichier parcouru</translation></message>
  <message><source> • Searching: %@</source><translation> • En cours : %@</translation></message>
  <message><source>Search interrupted (</source><translation>Recherche interrompue (</translation></message>
  <message><source>Search completed (</source><translation>Recherche terminée (</translation></message>
  <message><source>%d files searched)</source><translation>%d fichiers parcourus)</translation></message>
  <message><source>%d file searched)</source><translation>%d fichier parcouru)</translation></message>
  <message><source>&amp;Add Files and Folders…</source><translation>&amp;Ajouter des fichiers et dossiers…</translation></message>
  <message><source>&amp;Remove from List</source><translation>&amp;Retirer de la liste</translation></message>
  <message><source>&amp;Close Window</source><translation>&amp;Fermer la fenêtre</translation></message>
  <message><source>Sto&amp;p</source><translation>Arrê&amp;ter</translation></message>
  <message><source>Ignore &amp;Case</source><translation>I&amp;gnorer la casse</translation></message>
  <message><source>Regular E&amp;xpression</source><translation>E&amp;xpression régulière</translation></message>
  <message><source>File &amp;Types…</source><translation>T&amp;ypes de fichiers…</translation></message>
  <message><source>Context of the match</source><translation>Contexte de l’occurrence</translation></message>
  <message><source>%@, line %lu</source><translation>%@, ligne %lu</translation></message>
  <message><source>The file around the highlighted match will appear here.</source><translation>Le fichier autour de l’occurrence en surbrillance s’affichera ici.</translation></message>
  <message><source>This file has changed since it was searched.</source><translation>Ce fichier a changé depuis la recherche.</translation></message>
  <message><source>This is too long to be copied.</source><translation>C’est trop long pour être copié.</translation></message>
  <message><source>Return opens it in %@</source><translation>Entrée l’ouvre dans %@</translation></message>
  <message><source>Return opens it with its default program</source><translation>Entrée l’ouvre avec son programme par défaut</translation></message>
  <message><source>Show Conte&amp;xt</source><translation>Afficher le conte&amp;xte</translation></message>
  <message><source>That is only what the filter “%@” shows.</source><translation>C’est uniquement ce que montre le filtre « %@ ».</translation></message>
  <message><source>Export the Results That Show</source><translation>Exporter les résultats visibles</translation></message>
  <message><source>Filter results</source><translation>Filtrer les résultats</translation></message>
  <message><source>Show only results with this text in their path or line</source><translation>Ne montrer que les résultats dont le chemin ou la ligne contient ce texte</translation></message>
  <message><source>%@ of %@ files show</source><translation>fichiers visibles : %@ sur %@</translation></message>
  <message><source>%@ of %@ file shows</source><translation>fichiers visibles : %@ sur %@</translation></message>
  <message><source>No result has “%@” in its path or line.</source><translation>Aucun résultat ne contient « %@ » dans son chemin ou sa ligne.</translation></message>
  <message><source>only in the results that show</source><translation>seulement dans les résultats visibles</translation></message>
  <message><source>Fi&amp;lter Results</source><translation>Fi&amp;ltrer les résultats</translation></message>
  <message><source>While the results have the keyboard</source><translation>Quand le focus est dans les résultats</translation></message>
  <message><source>Keyboard Shortcuts</source><translation>Raccourcis clavier</translation></message>
  <message><source>&amp;Keyboard Shortcuts</source><translation>&amp;Raccourcis clavier</translation></message>
  <message><source>Expand the file</source><translation>Développer les lignes du fichier</translation></message>
  <message><source>Collapse the file, or go from a line to it</source><translation>Réduire les lignes du fichier, ou passer d’une ligne à son fichier</translation></message>
  <message><source>First row</source><translation>Première ligne de la liste</translation></message>
  <message><source>Last row</source><translation>Dernière ligne de la liste</translation></message>
  <message><source>A page up</source><translation>Une page vers le haut</translation></message>
  <message><source>A page down</source><translation>Une page vers le bas</translation></message>
  <message><source>Select the row</source><translation>Sélectionner la ligne</translation></message>
  <message><source>Select the row, or not any more</source><translation>Sélectionner ou désélectionner la ligne</translation></message>
  <message><source>Select everything</source><translation>Tout sélectionner</translation></message>
  <message><source>line %lu, %@: %@</source><translation>ligne %lu, %@ : %@</translation></message>
  <message><source>line %lu, match %lu of %lu: %@</source><translation>ligne %lu, occurrence %lu sur %lu : %@</translation></message>
  <message><source>%@, couldn’t be searched</source><translation>%@, recherche impossible</translation></message>
  <message><source>%@, %@</source><translation>%@, %@</translation></message>
  <message><source>%@, expanded</source><translation>%@, développé</translation></message>
  <message><source>%@, collapsed</source><translation>%@, réduit</translation></message>
  <message><source>S&amp;witch between Form, Results and Context</source><translation>&amp;Basculer entre formulaire, résultats et contexte</translation></message>
  <message><source>&amp;Next Match</source><translation>Occurrence sui&amp;vante</translation></message>
  <message><source>&amp;Previous Match</source><translation>Occurrence &amp;précédente</translation></message>
  <message><source>Export Results</source><translation>Exporter les résultats</translation></message>
  <message><source>&amp;Export Results…</source><translation>E&amp;xporter les résultats…</translation></message>
  <message><source>Text (*.txt)</source><translation>Texte (*.txt)</translation></message>
  <message><source>CSV (*.csv)</source><translation>CSV (*.csv)</translation></message>
  <message><source>JSON Lines (*.jsonl)</source><translation>JSON Lines (*.jsonl)</translation></message>
  <message><source>Markdown (*.md)</source><translation>Markdown (*.md)</translation></message>
  <message><source>Writing results…</source><translation>Écriture des résultats…</translation></message>
  <message><source>The results could not be written to ‘%@’.</source><translation>Les résultats n’ont pas pu être écrits dans « %@ ».</translation></message>
  <message><source>Copy As</source><translation>Copier comme</translation></message>
  <message><source>Path, Line, Column and Text</source><translation>Chemin, ligne, colonne et texte</translation></message>
  <message><source>Paths Only</source><translation>Chemins seuls</translation></message>
  <message><source>Markdown</source><translation>Markdown</translation></message>
  <message><source>&amp;Editor</source><translation>É&amp;diteur</translation></message>
  <message><source>&amp;Open a match with:</source><translation>&amp;Ouvrir une occurrence avec :</translation></message>
  <message><source>Command of the editor</source><translation>Commande de l’éditeur</translation></message>
  <message><source>editor +%l:%c %f</source><translation>editeur +%l:%c %f</translation></message>
  <message><source>In a command of your own %f stands for the file, %l for the line and %c for the column. Words with blanks are put in double quotes. Return or a double click on a line of the results opens it.</source><translation>Dans une commande personnelle, %f représente le fichier, %l la ligne et %c la colonne. Les mots contenant des espaces se mettent entre guillemets droits. La touche Entrée ou un double-clic sur une ligne des résultats l’ouvre.</translation></message>
  <message><source>The desktop's default program, at the beginning</source><translation>Le programme par défaut du bureau (au début du fichier)</translation></message>
  <message><source>A command of my own</source><translation>Une commande personnelle</translation></message>
  <message><source>Open at Match</source><translation>Ouvrir à l’occurrence</translation></message>
  <message><source>The name of the file can't be handed over to another program, or no command is set.</source><translation>Le nom du fichier ne peut pas être transmis à un autre programme, ou aucune commande n’est définie.</translation></message>
  <message><source>The editor could not be started with “%@”. Choose another one in Preferences.</source><translation>L’éditeur n’a pas pu être lancé avec « %@ ». Choisissez-en un autre dans les préférences.</translation></message>
  <message><source>The desktop has no program to open “%@” with.</source><translation>Le bureau n’a aucun programme pour ouvrir « %@ ».</translation></message>
  <message><source>You can undo this with Edit &gt; Undo.</source><translation>Vous pouvez l’annuler avec Édition &gt; Annuler.</translation></message>
  <message><source>&amp;Undo Replacing</source><translation>&amp;Annuler le remplacement</translation></message>
  <message><source>&amp;Undo Replacing in %@ File</source><translation>&amp;Annuler le remplacement dans %@ fichier</translation></message>
  <message><source>&amp;Undo Replacing in %@ Files</source><translation>&amp;Annuler le remplacement dans %@ fichiers</translation></message>
  <message><source>&amp;Redo Replacing</source><translation>&amp;Rétablir le remplacement</translation></message>
  <message><source>&amp;Redo Replacing in %@ File</source><translation>&amp;Rétablir le remplacement dans %@ fichier</translation></message>
  <message><source>&amp;Redo Replacing in %@ Files</source><translation>&amp;Rétablir le remplacement dans %@ fichiers</translation></message>
  <message><source>%@ file is as it was before</source><translation>%@ fichier revenu à son état antérieur</translation></message>
  <message><source>%@ files are as they were before</source><translation>%@ fichiers revenus à leur état antérieur</translation></message>
  <message><source>Stopped</source><translation>Arrêté</translation></message>
  <message><source>What was noted of this replacement can't be read any more.</source><translation>Les données conservées sur ce remplacement ne sont plus lisibles.</translation></message>
  <message><source>&amp;History of Replacements…</source><translation>&amp;Historique des remplacements…</translation></message>
  <message><source>Delete &amp;Backups…</source><translation>Supprimer les &amp;sauvegardes…</translation></message>
  <message><source>In use</source><translation>En cours</translation></message>
  <message><source>Undone</source><translation>Annulé</translation></message>
  <message><source>Done</source><translation>Effectué</translation></message>
  <message><source>&amp;Forget</source><translation>&amp;Oublier</translation></message>
  <message><source>History of Replacements</source><translation>Historique des remplacements</translation></message>
  <message><source>When</source><translation>Quand</translation></message>
  <message><source>Find → Replace</source><translation>Rechercher → Remplacer</translation></message>
  <message><source>Files</source><translation>Fichiers</translation></message>
  <message><source>Size</source><translation>Taille</translation></message>
  <message><source>State</source><translation>État</translation></message>
  <message><source>A file that was changed since isn't touched. What is forgotten can't be taken back.</source><translation>Un fichier modifié depuis n’est pas touché. Un remplacement oublié ne peut plus être annulé.</translation></message>
  <message><source>&amp;Delete Ticked</source><translation>&amp;Supprimer les sauvegardes cochées</translation></message>
  <message><source>Delete Backups</source><translation>Supprimer les sauvegardes</translation></message>
  <message><source>Backup</source><translation>Sauvegarde</translation></message>
  <message><source>A backup that was changed, or isn't the one that was made, stays where it is.</source><translation>Une sauvegarde modifiée entre-temps, ou qui n’est plus celle d’origine, reste en place.</translation></message>
  <message><source>%@ backups deleted.</source><translation>%@ sauvegardes supprimées.</translation></message>
  <message><source>%@ were not, as they were changed or are not permitted to go: %@</source><translation>%@ ne l’ont pas été, car elles ont été modifiées ou ne peuvent pas être supprimées : %@</translation></message>
  <message><source>E&amp;xtend to Next Match</source><translation>É&amp;tendre la sélection à l’occurrence suivante</translation></message>
  <message><source>Extend &amp;to Previous Match</source><translation>Étendre la sélection à l’&amp;occurrence précédente</translation></message>
  <message><source>First Match in Next &amp;File</source><translation>Première occurrence du &amp;fichier suivant</translation></message>
  <message><source>First Match in Pre&amp;vious File</source><translation>Première occurrence du fichier pré&amp;cédent</translation></message>
  <message><source>&amp;Expand or Collapse All</source><translation>Tout &amp;développer ou réduire</translation></message>
  <message><source>Re&amp;move Selected from Results</source><translation>Ret&amp;irer la sélection des résultats</translation></message>
  <message><source>&amp;Replace</source><translation>&amp;Remplacer</translation></message>
  <message><source>Replace an&amp;d Find</source><translation>Remplacer et con&amp;tinuer</translation></message>
  <message><source>Replace &amp;Selection…</source><translation>Remplacer la sé&amp;lection…</translation></message>
  <message><source>Replace &amp;All…</source><translation>Remplacer t&amp;out…</translation></message>
  <message><source>Do you want to stop the replace that is in progress?</source><translation>Voulez-vous arrêter le remplacement en cours ?</translation></message>
  <message><source>Stopping a replace before it finishes will leave files in an unknown state.</source><translation>Arrêter un remplacement avant la fin laissera des fichiers dans un état indéterminé.</translation></message>
  <message><source>%@ no longer exists</source><translation>%@ n’existe plus</translation></message>
  <message><source>Subfolders</source><translation>Sous-dossiers</translation></message>
  <message><source>Tick to search the folders inside this folder, too</source><translation>Cocher pour chercher aussi dans les dossiers de ce dossier</translation></message>
  <message><source>Location</source><translation>Emplacement</translation></message>
  <message><source>Search &amp;in</source><translation>C&amp;hercher dans</translation></message>
  <message><source>+</source><translation>+</translation></message>
  <message><source>Add files and folders</source><translation>Ajouter des fichiers et dossiers</translation></message>
  <message><source>–</source><translation>–</translation></message>
  <message><source>Remove location</source><translation>Retirer l’emplacement</translation></message>
  <message><source>Fin&amp;d</source><translation>Re&amp;chercher</translation></message>
  <message><source>Find</source><translation>Rechercher</translation></message>
  <message><source>Re&amp;place</source><translation>Rem&amp;placer</translation></message>
  <message><source>Replace</source><translation>Remplacer</translation></message>
  <message><source>Ignore &amp;case</source><translation>I&amp;gnorer la casse</translation></message>
  <message><source>Regular e&amp;xpression</source><translation>E&amp;xpression régulière</translation></message>
  <message><source>Searching</source><translation>Recherche en cours</translation></message>
  <message><source>Search results</source><translation>Résultats de la recherche</translation></message>
  <message><source>Previous</source><translation>Précédente</translation></message>
  <message><source>Previous match</source><translation>Occurrence précédente</translation></message>
  <message><source>Next</source><translation>Suivante</translation></message>
  <message><source>Next match</source><translation>Occurrence suivante</translation></message>
  <message><source>Expand/Collapse</source><translation>Développer/Réduire</translation></message>
  <message><source>Expand or collapse all</source><translation>Tout développer ou réduire</translation></message>
  <message><source>Remove</source><translation>Retirer</translation></message>
  <message><source>Remove selected results</source><translation>Retirer les résultats sélectionnés</translation></message>
  <message><source>Files replaced</source><translation>Fichiers traités</translation></message>
  <message><source>Stop Replace</source><translation>Arrêter le remplacement</translation></message>
  <message><source>Replace and Fi&amp;nd</source><translation>Remplacer et con&amp;tinuer</translation></message>
  <message><source>Replace Se&amp;lection…</source><translation>Remplacer la sé&amp;lection…</translation></message>
  <message><source>Preferences</source><translation>Préférences</translation></message>
  <message><source>&amp;General</source><translation>&amp;Général</translation></message>
  <message><source>Reading files</source><translation>Lecture des fichiers</translation></message>
  <message><source>&amp;Detect the encoding of each file</source><translation>&amp;Détecter l’encodage de chaque fichier</translation></message>
  <message><source>&amp;Larger Text</source><translation>Te&amp;xte plus grand</translation></message>
  <message><source>Smaller Te&amp;xt</source><translation>Texte plus pe&amp;tit</translation></message>
  <message><source>Standard Text Si&amp;ze</source><translation>Ta&amp;ille standard</translation></message>
  <message><source>Add Folder…</source><translation>Ajouter un dossier…</translation></message>
  <message><source>Drop to search here</source><translation>Déposer pour chercher ici</translation></message>
  <message><source>Add a folder or a file to search first.</source><translation>Ajoutez d’abord un dossier ou un fichier où chercher.</translation></message>
  <message><source>Type what to find first.</source><translation>Saisissez d’abord le texte à rechercher.</translation></message>
  <message><source>Free software under the BSD 2-Clause License.</source><translation>Logiciel libre sous licence BSD à deux clauses.</translation></message>
  <message><source>Built with %@.</source><translation>Construit avec %@.</translation></message>
  <message><source>Default &amp;encoding</source><translation>&amp;Encodage par défaut</translation></message>
  <message><source>Default encoding</source><translation>Encodage par défaut</translation></message>
  <message><source>Replacing</source><translation>Remplacement</translation></message>
  <message><source>Make a &amp;backup of each file before it is changed</source><translation>&amp;Sauvegarder chaque fichier avant de le modifier</translation></message>
  <message><source>Backups lie beside their files; “.TDMBackup.” stands in their names.</source><translation>Les sauvegardes se trouvent à côté de leurs fichiers ; leur nom contient « .TDMBackup. ».</translation></message>
  <message><source>Histories</source><translation>Historiques</translation></message>
  <message><source>Find and replace texts to &amp;remember</source><translation>Nombre de textes recherchés et de remplacement à &amp;mémoriser</translation></message>
  <message><source>Find and replace texts to remember</source><translation>Nombre de textes recherchés et de remplacement à mémoriser</translation></message>
  <message><source>File &amp;types</source><translation>&amp;Types de fichiers</translation></message>
  <message><source>&amp;Kinds of files that are searched in folders</source><translation>Catégories de fi&amp;chiers recherchées dans les dossiers</translation></message>
  <message><source>Kinds of files that are searched in folders</source><translation>Catégories de fichiers recherchées dans les dossiers</translation></message>
  <message><source>&amp;Add</source><translation>&amp;Ajouter</translation></message>
  <message><source>Add a kind below the selected one (Insert)</source><translation>Ajouter une catégorie sous celle qui est sélectionnée (Inser)</translation></message>
  <message><source>D&amp;uplicate</source><translation>&amp;Dupliquer</translation></message>
  <message><source>Add a copy of the selected kind (Ctrl+D)</source><translation>Ajouter une copie de la catégorie sélectionnée (Ctrl+D)</translation></message>
  <message><source>&amp;Remove</source><translation>&amp;Retirer</translation></message>
  <message><source>Remove the selected kind (Delete)</source><translation>Retirer la catégorie sélectionnée (Suppr)</translation></message>
  <message><source>Move U&amp;p</source><translation>&amp;Monter</translation></message>
  <message><source>Move the selected kind up (Alt+Up)</source><translation>Monter la catégorie sélectionnée (Alt+Haut)</translation></message>
  <message><source>Move Do&amp;wn</source><translation>De&amp;scendre</translation></message>
  <message><source>Move the selected kind down (Alt+Down)</source><translation>Descendre la catégorie sélectionnée (Alt+Bas)</translation></message>
  <message><source>Restore &amp;List…</source><translation>Rétab&amp;lir la liste…</translation></message>
  <message><source>Restore the original list of kinds</source><translation>Rétablir la liste d’origine des catégories de fichiers</translation></message>
  <message><source>Remark on the selected kind</source><translation>Remarque sur la catégorie sélectionnée</translation></message>
  <message><source>A filter is a pattern for file names, such as *.txt, or a type, such as uti:public.text. Files that match any ticked kind are searched.</source><translation>Un filtre est un motif de noms de fichiers, comme *.txt, ou un type, comme uti:public.text. La recherche porte sur les fichiers qui correspondent à l’une des catégories cochées.</translation></message>
  <message><source>&amp;Close</source><translation>&amp;Fermer</translation></message>
  <message><source>Western (Mac OS Roman)</source><translation>Occidental (Mac OS Roman)</translation></message>
  <message><source>Greek (Mac OS)</source><translation>Grec (Mac OS)</translation></message>
  <message><source>Cyrillic (Mac OS)</source><translation>Cyrillique (Mac OS)</translation></message>
  <message><source>Central European (Mac OS)</source><translation>Europe centrale (Mac OS)</translation></message>
  <message><source>Turkish (Mac OS)</source><translation>Turc (Mac OS)</translation></message>
  <message><source>Cyrillic (Mac OS Ukrainian)</source><translation>Cyrillique (Mac OS, ukrainien)</translation></message>
  <message><source>Unicode (UTF-16)</source><translation>Unicode (UTF-16)</translation></message>
  <message><source>Unicode (UTF-7)</source><translation>Unicode (UTF-7)</translation></message>
  <message><source>Unicode (UTF-8)</source><translation>Unicode (UTF-8)</translation></message>
  <message><source>Unicode (UTF-32)</source><translation>Unicode (UTF-32)</translation></message>
  <message><source>Unicode (UTF-16BE)</source><translation>Unicode (UTF-16BE)</translation></message>
  <message><source>Unicode (UTF-16LE)</source><translation>Unicode (UTF-16LE)</translation></message>
  <message><source>Unicode (UTF-32BE)</source><translation>Unicode (UTF-32BE)</translation></message>
  <message><source>Unicode (UTF-32LE)</source><translation>Unicode (UTF-32LE)</translation></message>
  <message><source>Western (ISO Latin 1)</source><translation>Occidental (ISO Latin 1)</translation></message>
  <message><source>Central European (ISO Latin 2)</source><translation>Europe centrale (ISO Latin 2)</translation></message>
  <message><source>Western (ISO Latin 3)</source><translation>Occidental (ISO Latin 3)</translation></message>
  <message><source>Central European (ISO Latin 4)</source><translation>Europe centrale (ISO Latin 4)</translation></message>
  <message><source>Cyrillic (ISO 8859-5)</source><translation>Cyrillique (ISO 8859-5)</translation></message>
  <message><source>Arabic (ISO 8859-6)</source><translation>Arabe (ISO 8859-6)</translation></message>
  <message><source>Greek (ISO 8859-7)</source><translation>Grec (ISO 8859-7)</translation></message>
  <message><source>Hebrew (ISO 8859-8)</source><translation>Hébreu (ISO 8859-8)</translation></message>
  <message><source>Turkish (ISO Latin 5)</source><translation>Turc (ISO Latin 5)</translation></message>
  <message><source>Nordic (ISO Latin 6)</source><translation>Nordique (ISO Latin 6)</translation></message>
  <message><source>Thai (ISO 8859-11)</source><translation>Thaï (ISO 8859-11)</translation></message>
  <message><source>Baltic (ISO Latin 7)</source><translation>Balte (ISO Latin 7)</translation></message>
  <message><source>Celtic (ISO Latin 8)</source><translation>Celtique (ISO Latin 8)</translation></message>
  <message><source>Western (ISO Latin 9)</source><translation>Occidental (ISO Latin 9)</translation></message>
  <message><source>Latin-US (DOS)</source><translation>Latin-US (DOS)</translation></message>
  <message><source>Greek (DOS)</source><translation>Grec (DOS)</translation></message>
  <message><source>Baltic (DOS)</source><translation>Balte (DOS)</translation></message>
  <message><source>Western (DOS Latin 1)</source><translation>Occidental (DOS Latin 1)</translation></message>
  <message><source>Greek (DOS Greek 1)</source><translation>Grec (DOS grec 1)</translation></message>
  <message><source>Central European (DOS Latin 2)</source><translation>Europe centrale (DOS Latin 2)</translation></message>
  <message><source>Cyrillic (DOS)</source><translation>Cyrillique (DOS)</translation></message>
  <message><source>Turkish (DOS)</source><translation>Turc (DOS)</translation></message>
  <message><source>Portuguese (DOS)</source><translation>Portugais (DOS)</translation></message>
  <message><source>Icelandic (DOS)</source><translation>Islandais (DOS)</translation></message>
  <message><source>Hebrew (DOS)</source><translation>Hébreu (DOS)</translation></message>
  <message><source>Canadian French (DOS)</source><translation>Français canadien (DOS)</translation></message>
  <message><source>Arabic (DOS)</source><translation>Arabe (DOS)</translation></message>
  <message><source>Nordic (DOS)</source><translation>Nordique (DOS)</translation></message>
  <message><source>Russian (DOS)</source><translation>Russe (DOS)</translation></message>
  <message><source>Greek (DOS Greek 2)</source><translation>Grec (DOS grec 2)</translation></message>
  <message><source>Thai (Windows, DOS)</source><translation>Thaï (Windows, DOS)</translation></message>
  <message><source>Japanese (Windows, DOS)</source><translation>Japonais (Windows, DOS)</translation></message>
  <message><source>Simplified Chinese (Windows, DOS)</source><translation>Chinois simplifié (Windows, DOS)</translation></message>
  <message><source>Korean (Windows, DOS)</source><translation>Coréen (Windows, DOS)</translation></message>
  <message><source>Traditional Chinese (Windows, DOS)</source><translation>Chinois traditionnel (Windows, DOS)</translation></message>
  <message><source>Western (Windows Latin 1)</source><translation>Occidental (Windows Latin 1)</translation></message>
  <message><source>Central European (Windows Latin 2)</source><translation>Europe centrale (Windows Latin 2)</translation></message>
  <message><source>Cyrillic (Windows)</source><translation>Cyrillique (Windows)</translation></message>
  <message><source>Greek (Windows)</source><translation>Grec (Windows)</translation></message>
  <message><source>Turkish (Windows Latin 5)</source><translation>Turc (Windows Latin 5)</translation></message>
  <message><source>Hebrew (Windows)</source><translation>Hébreu (Windows)</translation></message>
  <message><source>Arabic (Windows)</source><translation>Arabe (Windows)</translation></message>
  <message><source>Baltic (Windows)</source><translation>Balte (Windows)</translation></message>
  <message><source>Vietnamese (Windows)</source><translation>Vietnamien (Windows)</translation></message>
  <message><source>Western (ASCII)</source><translation>Occidental (ASCII)</translation></message>
  <message><source>Chinese (GBK)</source><translation>Chinois (GBK)</translation></message>
  <message><source>Chinese (GB 18030)</source><translation>Chinois (GB 18030)</translation></message>
  <message><source>Japanese (ISO 2022-JP)</source><translation>Japonais (ISO 2022-JP)</translation></message>
  <message><source>Japanese (ISO 2022-JP-2)</source><translation>Japonais (ISO 2022-JP-2)</translation></message>
  <message><source>Japanese (ISO 2022-JP-1)</source><translation>Japonais (ISO 2022-JP-1)</translation></message>
  <message><source>Chinese (ISO 2022-CN)</source><translation>Chinois (ISO 2022-CN)</translation></message>
  <message><source>Korean (ISO 2022-KR)</source><translation>Coréen (ISO 2022-KR)</translation></message>
  <message><source>Japanese (EUC)</source><translation>Japonais (EUC)</translation></message>
  <message><source>Simplified Chinese (GB 2312)</source><translation>Chinois simplifié (GB 2312)</translation></message>
  <message><source>Traditional Chinese (EUC)</source><translation>Chinois traditionnel (EUC)</translation></message>
  <message><source>Korean (EUC)</source><translation>Coréen (EUC)</translation></message>
  <message><source>Japanese (Shift JIS)</source><translation>Japonais (Shift JIS)</translation></message>
  <message><source>Cyrillic (KOI8-R)</source><translation>Cyrillique (KOI8-R)</translation></message>
  <message><source>Traditional Chinese (Big 5)</source><translation>Chinois traditionnel (Big 5)</translation></message>
  <message><source>Simplified Chinese (HZ GB 2312)</source><translation>Chinois simplifié (HZ GB 2312)</translation></message>
  <message><source>Traditional Chinese (Big 5 HKSCS)</source><translation>Chinois traditionnel (Big 5 HKSCS)</translation></message>
  <message><source>Ukrainian (KOI8-U)</source><translation>Ukrainien (KOI8-U)</translation></message>
  <message><source>Japanese (Mac OS)</source><translation>Japonais (Mac OS)</translation></message>
  <message><source>Traditional Chinese (Mac OS)</source><translation>Chinois traditionnel (Mac OS)</translation></message>
  <message><source>Korean (Mac OS)</source><translation>Coréen (Mac OS)</translation></message>
  <message><source>Arabic (Mac OS)</source><translation>Arabe (Mac OS)</translation></message>
  <message><source>Hebrew (Mac OS)</source><translation>Hébreu (Mac OS)</translation></message>
  <message><source>Devanagari (Mac OS)</source><translation>Devanagari (Mac OS)</translation></message>
  <message><source>Gurmukhi (Mac OS)</source><translation>Gurmukhi (Mac OS)</translation></message>
  <message><source>Gujarati (Mac OS)</source><translation>Gujarati (Mac OS)</translation></message>
  <message><source>Thai (Mac OS)</source><translation>Thaï (Mac OS)</translation></message>
  <message><source>Simplified Chinese (Mac OS)</source><translation>Chinois simplifié (Mac OS)</translation></message>
  <message><source>Tibetan (Mac OS)</source><translation>Tibétain (Mac OS)</translation></message>
  <message><source>Symbol (Mac OS)</source><translation>Symboles (Mac OS)</translation></message>
  <message><source>Dingbats (Mac OS)</source><translation>Dingbats (Mac OS)</translation></message>
  <message><source>Croatian (Mac OS)</source><translation>Croate (Mac OS)</translation></message>
  <message><source>Icelandic (Mac OS)</source><translation>Islandais (Mac OS)</translation></message>
  <message><source>Romanian (Mac OS)</source><translation>Roumain (Mac OS)</translation></message>
  <message><source>Celtic (Mac OS)</source><translation>Celtique (Mac OS)</translation></message>
  <message><source>Gaelic (Mac OS)</source><translation>Gaélique (Mac OS)</translation></message>
  <message><source>Keyboard Symbols (Mac OS)</source><translation>Symboles du clavier (Mac OS)</translation></message>
  <message><source>Farsi (Mac OS)</source><translation>Persan (Mac OS)</translation></message>
  <message><source>Inuit (Mac OS)</source><translation>Inuit (Mac OS)</translation></message>
  <message><source>Romanian (ISO Latin 10)</source><translation>Roumain (ISO Latin 10)</translation></message>
  <message><source>Japanese (Shift JIS X0213)</source><translation>Japonais (Shift JIS X0213)</translation></message>
  <message><source>Western (Mac Mail)</source><translation>Occidental (Mac Mail)</translation></message>
  <message><source>Traditional Chinese (Big 5-E)</source><translation>Chinois traditionnel (Big 5-E)</translation></message>
  <message><source>Western (NextStep)</source><translation>Occidental (NextStep)</translation></message>
  <message><source>Western (EBCDIC Latin Core)</source><translation>Occidental (EBCDIC, noyau latin)</translation></message>
  <message><source>Oriya (Mac OS)</source><translation>Oriya (Mac OS)</translation></message>
  <message><source>Bengali (Mac OS)</source><translation>Bengali (Mac OS)</translation></message>
  <message><source>Tamil (Mac OS)</source><translation>Tamoul (Mac OS)</translation></message>
  <message><source>Telugu (Mac OS)</source><translation>Télougou (Mac OS)</translation></message>
  <message><source>Kannada (Mac OS)</source><translation>Kannada (Mac OS)</translation></message>
  <message><source>Malayalam (Mac OS)</source><translation>Malayalam (Mac OS)</translation></message>
  <message><source>Sinhalese (Mac OS)</source><translation>Cingalais (Mac OS)</translation></message>
  <message><source>Burmese (Mac OS)</source><translation>Birman (Mac OS)</translation></message>
  <message><source>Khmer (Mac OS)</source><translation>Khmer (Mac OS)</translation></message>
  <message><source>Laotian (Mac OS)</source><translation>Laotien (Mac OS)</translation></message>
  <message><source>Georgian (Mac OS)</source><translation>Géorgien (Mac OS)</translation></message>
  <message><source>Armenian (Mac OS)</source><translation>Arménien (Mac OS)</translation></message>
  <message><source>Mongolian (Mac OS)</source><translation>Mongol (Mac OS)</translation></message>
  <message><source>Ethiopic (Mac OS)</source><translation>Éthiopien (Mac OS)</translation></message>
  <message><source>Vietnamese (Mac OS)</source><translation>Vietnamien (Mac OS)</translation></message>
  <message><source>Extended Arabic (Mac OS)</source><translation>Arabe étendu (Mac OS)</translation></message>
  <message><source>VT100 (Mac OS)</source><translation>VT100 (Mac OS)</translation></message>
  <message><source>Korean (Windows Johab)</source><translation>Coréen (Windows Johab)</translation></message>
  <message><source>Western (ANSEL)</source><translation>Occidental (ANSEL)</translation></message>
  <message><source>Japanese (JIS X 0201)</source><translation>Japonais (JIS X 0201)</translation></message>
  <message><source>Japanese (JIS X 0208, 1983)</source><translation>Japonais (JIS X 0208, 1983)</translation></message>
  <message><source>Japanese (JIS X 0208, 1990)</source><translation>Japonais (JIS X 0208, 1990)</translation></message>
  <message><source>Japanese (JIS X 0212)</source><translation>Japonais (JIS X 0212)</translation></message>
  <message><source>Japanese (JIS C 6226)</source><translation>Japonais (JIS C 6226)</translation></message>
  <message><source>Japanese (JIS X 0213, row and cell)</source><translation>Japonais (JIS X 0213, rangée et cellule)</translation></message>
  <message><source>Simplified Chinese (GB 2312-80)</source><translation>Chinois simplifié (GB 2312-80)</translation></message>
  <message><source>Korean (KS C 5601, 1987)</source><translation>Coréen (KS C 5601, 1987)</translation></message>
  <message><source>Korean (Johab)</source><translation>Coréen (Johab)</translation></message>
  <message><source>Traditional Chinese (CNS 11643, plane 1)</source><translation>Chinois traditionnel (CNS 11643, plan 1)</translation></message>
  <message><source>Traditional Chinese (CNS 11643, plane 2)</source><translation>Chinois traditionnel (CNS 11643, plan 2)</translation></message>
  <message><source>Traditional Chinese (CNS 11643, plane 3)</source><translation>Chinois traditionnel (CNS 11643, plan 3)</translation></message>
  <message><source>Japanese (ISO 2022-JP-3)</source><translation>Japonais (ISO 2022-JP-3)</translation></message>
  <message><source>Chinese (ISO 2022-CN-EXT)</source><translation>Chinois (ISO 2022-CN-EXT)</translation></message>
  <message><source>Vietnamese (VISCII)</source><translation>Vietnamien (VISCII)</translation></message>
  <message><source>Unicode (UTF-7 for mailboxes)</source><translation>Unicode (UTF-7 pour boîtes aux lettres)</translation></message>
  <message><source>Japanese (NextStep)</source><translation>Japonais (NextStep)</translation></message>
  <message><source>Non-lossy ASCII</source><translation>ASCII sans perte</translation></message>
  <message><source>Western (EBCDIC Latin 1)</source><translation>Occidental (EBCDIC Latin 1)</translation></message>
  <message><source>… and %d more</source><translation>… et %d autres</translation></message>
  <message><source>%@
    old content: %@
</source><translation>%@
    ancien contenu : %@
</translation></message>
  <message><source>%@: %@
    old content: %@
</source><translation>%@ : %@
    ancien contenu : %@
</translation></message>
  <message><source>The old content of some files could not be put back.</source><translation>L’ancien contenu de certains fichiers n’a pas pu être rétabli.</translation></message>
  <message><source>Their backups are still there, and Tidemark will ask again at its next start.</source><translation>Leurs sauvegardes sont toujours là, et Tidemark reposera la question au prochain démarrage.</translation></message>
  <message><source>Tidemark ended while it was rewriting files.</source><translation>Tidemark s’est arrêté pendant qu’il réécrivait des fichiers.</translation></message>
  <message><source>These files may be written only in part:

%@
Their old content is complete in backups. Do you want to put it back? If you keep the files as they are, the backups are left for you.</source><translation>Ces fichiers n’ont peut-être été écrits qu’en partie :

%@
Des sauvegardes contiennent la totalité de leur ancien contenu. Voulez-vous le rétablir ? Si vous laissez les fichiers tels quels, les sauvegardes sont conservées.</translation></message>
  <message><source>Put Old Content Back</source><translation>Rétablir l’ancien contenu</translation></message>
  <message><source>Keep Files As They Are</source><translation>Laisser les fichiers tels quels</translation></message>
  <message><source>Decide Later</source><translation>Décider plus tard</translation></message>
  <message><source>%d of %d files were done.</source><translation>%d fichiers sur %d étaient terminés.</translation></message>
  <message><source>All others are as they were, and none is damaged.</source><translation>Tous les autres sont tels qu’ils étaient, et aucun n’est endommagé.</translation></message>
  <message><source>What stands in them now is kept in new backups beside them.</source><translation>Leur contenu actuel est conservé dans de nouvelles sauvegardes à côté d’eux.</translation></message>
  <message><source>These files may be written only in part, too, but their backups are gone or hold something else. They are left as they are:

%@</source><translation>Ces fichiers-ci aussi n’ont peut-être été écrits qu’en partie, mais leurs sauvegardes manquent ou contiennent autre chose. Ils restent tels quels :

%@</translation></message>
  <message><source>These files were being written and are not where they were. Nothing is changed at these places:

%@</source><translation>Ces fichiers étaient en cours d’écriture et ne se trouvent plus au même endroit. Rien n’est modifié à ces emplacements :

%@</translation></message>
  <message><source>The file is as it was; nothing needs to be restored.</source><translation>Le fichier est intact ; il n’y a rien à restaurer.</translation></message>
  <message><source>File ‘%@’ was left as it is.</source><translation>Le fichier « %@ » a été laissé tel quel.</translation></message>
  <message><source>Written only in part</source><translation>Écrit seulement en partie</translation></message>
  <message><source>Written, but the disk reported a failure</source><translation>Écrit, mais le disque a signalé une erreur</translation></message>
  <message><source>Written, but its backup could not be deleted</source><translation>Écrit, mais sa sauvegarde n’a pas pu être supprimée</translation></message>
  <message><source>Changed since the search</source><translation>Modifié depuis la recherche</translation></message>
  <message><source>Not there any more</source><translation>N’existe plus</translation></message>
  <message><source>No permission</source><translation>Pas d’autorisation</translation></message>
  <message><source>No room on the disk</source><translation>Plus de place sur le disque</translation></message>
  <message><source>The file's encoding cannot hold the new text, or not all of its bytes can be read</source><translation>L’encodage du fichier ne permet pas d’écrire le nouveau texte, ou certains de ses octets sont illisibles</translation></message>
  <message><source>No backup could be made</source><translation>Aucune sauvegarde n’a pu être créée</translation></message>
  <message><source>The folder for notes on unfinished replacements cannot be written</source><translation>Le dossier qui consigne les remplacements inachevés n’est pas accessible en écriture</translation></message>
  <message><source>The disk reported a failure</source><translation>Le disque a signalé une erreur</translation></message>
  <message><source>Not begun, as the disk failed or is full</source><translation>Non commencé, car le disque est défaillant ou plein</translation></message>
  <message><source>The file holds something else than what was written.</source><translation>Le fichier contient autre chose que ce qui a été écrit.</translation></message>
  <message><source>Line %lu: the expression takes longer than a second there.</source><translation>Ligne %lu : l’expression y prend plus d’une seconde.</translation></message>
  <message><source>Line %lu: the expression takes too much memory there.</source><translation>Ligne %lu : l’expression y prend trop de mémoire.</translation></message>
  <message><source>Line %lu: the expression caused an internal error there.</source><translation>Ligne %lu : l’expression y a provoqué une erreur interne.</translation></message>
  <message><source>So it is on %lu lines in all.</source><translation>C’est le cas de %lu lignes au total.</translation></message>
  <message><source>a dollar sign stands for itself only as $$</source><translation>un signe dollar s’écrit $$</translation></message>
  <message><source>a number or a name and a closing brace are missing</source><translation>il manque un numéro ou un nom, et l’accolade fermante</translation></message>
  <message><source>the find text has no such group</source><translation>ce groupe n’existe pas dans le texte recherché</translation></message>
  <message><source>a backslash stands for itself only when it is doubled</source><translation>une barre oblique inverse doit être doublée</translation></message>
  <message><source>unknown character behind the backslash</source><translation>caractère inconnu après la barre oblique inverse</translation></message>
  <message><source>this is no number of a character</source><translation>ce n’est pas un numéro de caractère valable</translation></message>
  <message><source>Check to match characters of all languages and to see the whole line, also when replacing. (Cmd+U)</source><translation>Cocher pour que les expressions connaissent les caractères de toutes les langues et voient la ligne entière, même au remplacement. (Ctrl+U)</translation></message>
  <message><source>Check to find whole words only. (Cmd+D)</source><translation>Cocher pour ne trouver que des mots entiers. (Ctrl+D)</translation></message>
  <message><source>Some lines hold characters beyond ASCII; their matches may be shifted.</source><translation>Certaines lignes contiennent des caractères non ASCII ; les occurrences peuvent y être décalées.</translation></message>
  <message><source>Search Again with Unicode</source><translation>Relancer la recherche avec Unicode</translation></message>
  <message><source>At character %d: %@</source><translation>Au caractère %d : %@</translation></message>
  <message><source>&amp;Unicode</source><translation>Un&amp;icode</translation></message>
  <message><source>Wh&amp;ole words</source><translation>&amp;Mots entiers</translation></message>
  <message><source>&amp;Whole Words</source><translation>&amp;Mots entiers</translation></message>
  <message><source>&amp;More</source><translation>Pl&amp;us</translation></message>
  <message><source>&amp;More •</source><translation>Pl&amp;us •</translation></message>
  <message><source>Lea&amp;ve out</source><translation>&amp;Exclure</translation></message>
  <message><source>Leave out</source><translation>Exclure</translation></message>
  <message><source>Hidden files</source><translation>Fichiers cachés</translation></message>
  <message><source>Obe&amp;y ignore files</source><translation>Sui&amp;vre les exclusions</translation></message>
  <message><source>S&amp;kip files over</source><translation>&amp;Jusqu’à</translation></message>
  <message><source>Largest size of a file in megabytes</source><translation>Taille maximale d’un fichier en mégaoctets</translation></message>
  <message><source> MB</source><translation> Mo</translation></message>
  <message><source>Patterns separated by commas or spaces, as in an ignore file: node_modules/ *.min.js !keep.min.js</source><translation>Motifs séparés par des virgules ou des espaces, comme dans un fichier d’exclusion : node_modules/ *.min.js !keep.min.js</translation></message>
  <message><source>Check to search files and folders whose names begin with a dot, too.</source><translation>Cocher pour chercher aussi dans les fichiers et dossiers dont le nom commence par un point.</translation></message>
  <message><source>Check to leave out what the ignore files of Git (.gitignore) and .ignore name.</source><translation>Cocher pour exclure ce qui figure dans les fichiers d’exclusion de Git (.gitignore) et dans .ignore.</translation></message>
  <message><source>Show or hide what a search leaves out.</source><translation>Affiche ou masque ce qu’une recherche exclut.</translation></message>
  <message><source>“%@” matches nothing: its bracket is not closed.</source><translation>« %@ » ne correspond à rien : le crochet n’est pas fermé.</translation></message>
  <message><source>“%@” matches nothing: there is no such class.</source><translation>« %@ » ne correspond à rien : cette classe n’existe pas.</translation></message>
  <message><source>“%@” matches nothing: it ends in a backslash.</source><translation>« %@ » ne correspond à rien : il finit par une barre oblique inverse.</translation></message>
  <message><source>“%@” matches nothing: it names no file.</source><translation>« %@ » ne correspond à rien : il ne nomme aucun fichier.</translation></message>
  <message><source> • %@ left out</source><translation> • %@ exclus</translation></message>
  <message><source>Other kinds of files: %@</source><translation>Autres catégories de fichiers : %@</translation></message>
  <message><source>Pattern “%@”: %@</source><translation>Motif « %@ » : %@</translation></message>
  <message><source>Other patterns: %@</source><translation>Autres motifs : %@</translation></message>
  <message><source>Ignore file “%@”: %@</source><translation>Fichier d’exclusion « %@ » : %@</translation></message>
  <message><source>Other ignore files: %@</source><translation>Autres fichiers d’exclusion : %@</translation></message>
  <message><source>Hidden: %@</source><translation>Cachés : %@</translation></message>
  <message><source>Larger than the limit: %@</source><translation>Au-delà de la taille limite : %@</translation></message>
  <message><source>Links: %@</source><translation>Liens : %@</translation></message>
  <message><source>Devices, pipes and sockets: %@</source><translation>Périphériques, tubes et sockets : %@</translation></message>
  <message><source>Backups of replaced files: %@</source><translation>Sauvegardes : %@</translation></message>
  <message><source>Searched already by another path: %@</source><translation>Déjà parcourus sous un autre chemin : %@</translation></message>
  <message><source>Could not be read: %@</source><translation>Illisibles : %@</translation></message>
  <message><source>The ignore file “%@” could not be read.</source><translation>Le fichier d’exclusion « %@ » n’a pas pu être lu.</translation></message>
  <message><source>In the ignore file “%@” these patterns match nothing: %@</source><translation>Dans le fichier d’exclusion « %@ », ces motifs ne correspondent à rien : %@</translation></message>
  <message><source>A folder that is left out counts once.</source><translation>Un dossier exclu compte une fois.</translation></message>
  <message><source>No matches in %@ file.</source><translation>Aucune occurrence dans %@ fichier.</translation></message>
  <message><source>The search was stopped before it found anything.</source><translation>La recherche a été arrêtée avant d’avoir trouvé quoi que ce soit.</translation></message>
  <message><source>No matches in %@ files.</source><translation>Aucune occurrence dans %@ fichiers.</translation></message>
  <message><source>%@ file was left out…</source><translation>%@ fichier a été exclu…</translation></message>
  <message><source>%@ files were left out…</source><translation>%@ fichiers ont été exclus…</translation></message>
  <message><source>Kinds of files searched in folders: %@</source><translation>Catégories de fichiers recherchées dans les dossiers : %@</translation></message>
  <message><source>Search Again with Everything</source><translation>Relancer la recherche sans rien exclure</translation></message>
  <message><source>Leave Out This Folder</source><translation>Exclure ce dossier</translation></message>
  <message><source>Leave Out Files Like This</source><translation>Exclure les fichiers de ce genre</translation></message>
  <message><source>%@ file read as %@</source><translation>%@ fichier lu comme %@</translation></message>
  <message><source>%@ files read as %@</source><translation>%@ fichiers lus comme %@</translation></message>
  <message><source>%@ file couldn't be read</source><translation>%@ fichier n’a pas pu être lu</translation></message>
  <message><source>%@ files couldn't be read</source><translation>%@ fichiers n’ont pas pu être lus</translation></message>
  <message><source>byte-order mark</source><translation>indicateur d’ordre des octets</translation></message>
  <message><source>declared</source><translation>déclaré</translation></message>
  <message><source>noted with the file</source><translation>noté avec le fichier</translation></message>
  <message><source>chosen</source><translation>choisi</translation></message>
  <message><source>default</source><translation>par défaut</translation></message>
  <message><source>Encoding</source><translation>Encodage</translation></message>
  <message><source>Encoding: %@</source><translation>Encodage : %@</translation></message>
  <message><source>Encodings</source><translation>Encodages</translation></message>
  <message><source>Show Encodin&amp;gs</source><translation>Montrer les enco&amp;dages</translation></message>
  <message><source>Show &amp;Unreadable Files</source><translation>Montrer les fichiers &amp;illisibles</translation></message>
  <message><source>Read As…</source><translation>Lire comme…</translation></message>
  <message><source>Read As</source><translation>Lire comme</translation></message>
  <message><source>&amp;Read</source><translation>&amp;Lire</translation></message>
  <message><source>Preview</source><translation>Aperçu</translation></message>
  <message><source>Other encodings:</source><translation>Autres encodages :</translation></message>
  <message><source>“%@” was read in %@. Which encoding is it in?</source><translation>« %@ » a été lu en %@. Dans quel encodage est-il ?</translation></message>
  <message><source>“%@” isn't text in %@. Which encoding is it in?</source><translation>« %@ » n’est pas du texte en %@. Dans quel encodage est-il ?</translation></message>
  <message><source>The same for %@ &amp;other file that couldn't be read in %@</source><translation>De même pour %@ &amp;autre fichier qui n’a pas pu être lu en %@</translation></message>
  <message><source>The same for %@ &amp;other files that couldn't be read in %@</source><translation>De même pour %@ &amp;autres fichiers qui n’ont pas pu être lus en %@</translation></message>
  <message><source>Line %lu in this encoding:</source><translation>Ligne %lu dans cet encodage :</translation></message>
  <message><source>Select an encoding to see what becomes of the file.</source><translation>Choisissez un encodage pour voir ce que devient le fichier.</translation></message>
</context>
</TS>
