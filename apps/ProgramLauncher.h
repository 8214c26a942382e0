// ProgramLauncher: hands the command line over to one of the programs installed beside this
// one. The work is split over programs by what they load: `kygraph state` loads only the state
// model, the drawing commands load Cairo and Pango, and only serving loads the HTTP server
// and TLS; each program takes the same command line.
#pragma once

class ProgramLauncher {
public:
    // Replaces the process with the program named `name` in this program's folder, given
    // argv; returns only when that fails, with the exit status after a one-line report.
    static int Exec(const char* name, char** argv);
};
