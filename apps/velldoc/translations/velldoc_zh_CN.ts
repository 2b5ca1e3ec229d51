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
</context>
</TS>
