<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>velldoc</name>
    <message>
        <source>There is no option &quot;%1&quot;: see &quot;velldoc help&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>velldoc: the documents of a project, from the command line</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>velldoc [OPTIONS] COMMAND [ARGUMENTS]</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Options of every command</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&quot;velldoc help COMMAND&quot; tells more, with examples. Paths are names from the top level (/Drawings/plan.dwg) or identifiers (id:...); put -- in front of names that begin with a dash.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Options</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Examples</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What answers at %1 is no document service: check the address.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The service at %1 cannot be reached: check the address and the network, then try again. (%2)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Run &quot;velldoc login&quot; or pass --token.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Make room there, then run the same command again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The service did not do it and did not say why.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Kind</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Changed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>By</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no %1 in the project.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is a file, not a folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is the name of %2 entries: say which one you mean, %3.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no document id:%1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>See &quot;velldoc help %1&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The output could not be written.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no command &quot;%1&quot;: see &quot;velldoc help&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Interrupted.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1/s</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Something is missing on the command line.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&quot;%1&quot; is too much on the command line.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--%1 takes a whole number, not &quot;%2&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This velldoc was built without a service of its own: name one with --url, for example one started with &quot;vell-service --data DIR&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no address: write it like 127.0.0.1:8080.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Another velldoc is working on %1: try again when it has finished, or share the folder with &quot;velldoc serve&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The base address of the service.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The project; &quot;default&quot; unless set.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The access token.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Print one JSON document.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Explain the command.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file %1 cannot be written.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Interrupted. Run the same command again to go on.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 changed while it was being sent.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: %2 Trying again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The service did not say that it has the file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Checking %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n file(s)</source>
        <translation type="unfinished">
            <numerusform></numerusform>
        </translation>
    </message>
    <message>
        <source>it is a link to a folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>it cannot be read</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is a file, so the folder %2 cannot be stored there.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>it is no plain file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>it is not there</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is there already, so nothing was sent: pass --update for a new version, or --on-conflict rename or skip.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What arrived is not what the service has: try again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The content cannot be written: %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 cannot be written: %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 arrived with %2 bytes instead of %3: try again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--on-conflict takes ask, replace, rename, skip or cancel, not &quot;%1&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is a folder, which a file cannot replace: choose another name.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is there already.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>  r  replace it: the file becomes its new version</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>  n  keep it, and store the file as %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>  s  skip the file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>  c  cancel; nothing is sent</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A capital letter answers for all the following files, too: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&quot;%1&quot; cannot be the name of a local file: fetch it alone, under another name.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--force and --no-clobber exclude each other.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is a folder: pass -r to fetch everything in it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no local folder %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The folder %1 cannot be made.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There are several documents for %1: fetch them one by one, by their identifiers.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is a local folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is there already: pass --force to replace it, or --no-clobber to skip it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--reverse goes with --sort.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--sort takes one of %1, not &quot;%2&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is empty.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 to %2 of %3.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--skip goes with --limit.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>list folders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lists the entries of each folder PATH, of the top level without one; folders come first.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A table with size, time and who changed it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The folders below as well.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>By name, size, created, updated or order.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The other way round.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>At most so many of each folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Leave out so many first.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a folder with sizes and times</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>its ten largest files</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%1 has %n version(s), so there is no version %2.</source>
        <translation type="unfinished">
            <numerusform></numerusform>
        </translation>
    </message>
    <message>
        <source>The standard output holds either the content or --json.</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) fetched, %1.</source>
        <translation type="unfinished">
            <numerusform></numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) skipped.</source>
        <translation type="unfinished">
            <numerusform></numerusform>
        </translation>
    </message>
    <message>
        <source>Name one file only.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>fetch files and folders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fetches each file REMOTE into the local folder LOCAL (here, without one), or a single one under the name LOCAL; - is the standard output. A file appears under its name only when it is complete.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Folders as well, with everything below.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Replace local files that are there.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Skip local files that are there.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Version N of the file; 1 is the oldest.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Print where each file was stored.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>into the current folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a folder with everything below</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>an older version</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Path</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Identifier</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 (%2 bytes)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Category</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Created</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Created by</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Changed by</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Favourite</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remark</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>You may</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The top level is no document: name one in it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>tell everything about a document</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tells what the service knows about each document or folder PATH.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>for a script: identifier, size, dates, rights</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no folder %1: make it with &quot;velldoc mkdir -p&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is stored as %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 was left out: %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 was not stored: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) stored, %1.</source>
        <translation type="unfinished">
            <numerusform></numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n file(s) are stored.</source>
        <translation type="unfinished">
            <numerusform></numerusform>
        </translation>
    </message>
    <message>
        <source>The same command continues where the service has stopped.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The same command with --on-conflict skip stores the rest.</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n file(s) could not be stored.</source>
        <translation type="unfinished">
            <numerusform></numerusform>
        </translation>
    </message>
    <message>
        <source>There is no local file %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>store files and folders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stores each local file or folder in the folder REMOTE, or a single one under the name REMOTE. Large files go up in pieces: when the connection is lost, velldoc tries again, and a later run continues where the service stopped.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A file that is there gets a new version; the same as --on-conflict replace.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>When a name is taken: ask (on a terminal), replace, rename, skip or cancel.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>two files into a folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a new version of a file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a whole folder, going on where an earlier run ended</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 has no name for a folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is there already: choose another name, or pass -p if that will do.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>make folders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Makes each folder PATH in a folder that is there.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Make what is missing above it too; a folder that is there will do.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>make both folders, as far as they are missing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no command &quot;%1&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>explain the program or a command</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Explains a command with its options and examples; without a name, lists them all.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>everything about uploads</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is a &quot;%1&quot; in that folder already: choose another name.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The service did not say that it has renamed %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is a &quot;%1&quot; in %2 already: rename one of them first.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&quot;%1&quot; is none of list, add and remove.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No document is marked.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>[y/N] </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>y</source>
        <comment>the key for yes</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>0 B or over 2 GiB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is a folder, which has no versions.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Version</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stored</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>list the versions of a file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lists the versions of the file PATH, newest first. &quot;velldoc get --version N&quot; fetches one.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>who stored what, and when</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Access token (it is not shown; empty for a service without users): </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Say where: velldoc login https://documents.example.com/.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>velldoc now works at %1 in the project &quot;%2&quot; as %3.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>somebody</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>remember a service, a project and an access token</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tries the service URL with the project of --project and an access token, which is read from the terminal or the standard input, and remembers them in a file that only you can read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>all later commands work there</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>your favourites</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lists your favourites, marks documents as such, unmarks them, or tells whether one is.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a new favourite</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The top level has no name.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>give a document or a folder another name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Gives the document or folder PATH the name NAME, in the same folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the same drawing under another name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>serve has no result for --json.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Serving %1; Ctrl-C ends it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>run the service for others</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Serves the documents that velldoc keeps on this machine until Ctrl-C, and prints the address for --url. Other machines are served once the service has users; &quot;vell-service user --help&quot; tells how to add them.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Where to listen; any free port of this machine unless set.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The data folder; your own unless set.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>for other programs of this machine</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>fetch the content</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>store something in it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>change it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>delete it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>change what you made yourself</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>delete what you made yourself</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>You may not do that (%1).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no right called &quot;%1&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Granted</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Meaning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ask what you may do</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Asks the service what you may do with PATH; / is the project as a whole. With the name of one right the exit code answers: 0 for yes, 4 for no.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>store a file only where that is allowed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The recycle bin is empty.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no %1 in the recycle bin.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Several things in the recycle bin are called %1: say which one you mean, %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name what is to be restored, or pass --all.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is back beside another entry of that name: rename it with &quot;velldoc rename id:%2 NAME&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n document(s) restored.</source>
        <translation type="unfinished">
            <numerusform></numerusform>
        </translation>
    </message>
    <message>
        <source>Emptying cannot be undone: pass --yes if you mean it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>Delete %n document(s) for good?</source>
        <translation type="unfinished">
            <numerusform></numerusform>
        </translation>
    </message>
    <message>
        <source>Nothing was deleted.</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n document(s) deleted for good.</source>
        <translation type="unfinished">
            <numerusform></numerusform>
        </translation>
    </message>
    <message>
        <source>&quot;%1&quot; is none of list, restore and empty.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>look into the recycle bin, restore, empty</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lists what is in the recycle bin, brings back what is named (by name or id:...), or deletes everything in it for good.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Restore everything.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Empty without asking.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>bring a document back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pass one of --days, --until and --forever.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--until takes a date like 2026-05-31, not &quot;%1&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The share would have ended already.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name documents or folders, not the top level.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The service made the share, but gave no code for it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Whoever has this address can look at it until %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Whoever has this address can look at it, for ever.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>give others an address to look at documents</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Prints an address at which everybody who has it can see the documents and folders PATH. It is shown once: the service keeps no copy. Without an option it works for seven days.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ends after N days.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ends with this day, such as 2026-05-31.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Does not end.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Names only; contents cannot be fetched.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a folder for three days</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The top level has no password.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 has no password.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>show the password of a document</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Prints the password that opens the document PATH.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the password to open the offer with</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The top level has no place in an order.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>An order concerns the entries of one folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>put the entries of a folder in order</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Puts the entries PATH of one folder first, in this order; the others follow as they stand. Lists show folders before files all the same.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Order a whole folder by name, numbers by their value.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>these two first</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Level 2 before Level 10</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the documents that you use often</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lists the documents that you have marked as frequently used, marks them, or unmarks them.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a document for the list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The top level itself cannot be moved.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Two of them are called &quot;%1&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is there already: choose another name.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>move documents and folders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Moves each SOURCE into the folder TARGET, or a single one to the place and name TARGET.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>two documents into a folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>to another folder under another name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The service does not say who you are, so it cannot say what you stored.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>You have stored no files here.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>what you stored or used last</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lists the 50 files that you stored last. &quot;list&quot; shows those that are marked as recently used; &quot;add&quot; and &quot;remove&quot; change these marks.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The service&apos;s category word.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>your last files with their times</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n folder(s)</source>
        <translation type="unfinished">
            <numerusform></numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n file(s)</source>
        <translation type="unfinished">
            <numerusform></numerusform>
        </translation>
    </message>
    <message>
        <source>draw a folder with everything below</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Draws the folder PATH, the whole project without one, as a tree.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sizes behind the names of files.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Folders only.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Only so many levels.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the upper two levels of folders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The top level itself cannot be deleted.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is a folder: pass -r to delete it with everything in it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n document(s) moved to the recycle bin; &quot;velldoc trash&quot; brings them back.</source>
        <translation type="unfinished">
            <numerusform></numerusform>
        </translation>
    </message>
    <message>
        <source>move to the recycle bin</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Moves each document PATH, or with -r each folder with everything below, to the recycle bin.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a folder with everything in it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The service and the access token are forgotten.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There was nothing to forget.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>forget what login has remembered</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Removes the service, the project and the access token that &quot;velldoc login&quot; has remembered.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--%1 takes a date like 2026-05-31 or a time ago like 12h, 3d or 2w, not &quot;%2&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--%1 takes one of %2, not &quot;%3&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing was found.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>search by name, time, user and kind</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lists everything below PATH whose name fits PATTERN, what changed last first. In a pattern * stands for any text and ? for one character; capitals and small letters are the same.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PATTERN is a regular expression for a part of the name.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Changed since: 2026-05-31, or 12h, 3d, 2w ago.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Changed until the end of that day.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Changed last by the user with this identifier; may be repeated.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>file or dir.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>image, office, dwg, video or other.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>every drawing below a folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>pictures of the last three days</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>what can stand next, for shells</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Prints what the last WORD of a command line can become, one a line.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The top level has no remark.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>read or write a remark</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Prints the remark of the document PATH, or makes it TEXT; an empty TEXT removes it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The remark of version N; 1 is the oldest.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a remark on one version</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Suffixes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the kinds of files and their suffixes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Lists the kinds of files with their suffixes, or tells the kind of each file NAME by its suffix.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>which kind a drawing is</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Entity</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is linked to nothing.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&quot;%1&quot; is none of add and remove.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 has no link to %2 %3.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No document is linked to %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The top level has no links.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>what a document is linked to</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shows the entities that the document PATH is linked to, adds or removes links, or lists the documents that are linked to an entity.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The documents linked to this entity.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>link a drawing to a room</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The full address is what &quot;velldoc serve&quot; prints, with this behind it; it works while that runs.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
