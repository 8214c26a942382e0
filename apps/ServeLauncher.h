// ServeLauncher: `kygraph serve` in the program every other command runs in. That program does
// not link the web viewer, so that rendering or querying a state never loads the HTTP server
// and TLS; serving replaces the process with kygraph-serve, installed beside it, which takes
// the same command line.
#pragma once

class ServeLauncher {
public:
    // Replaces the process with kygraph-serve given argv; returns only when that fails, with
    // the exit status after a one-line report.
    static int Exec(char** argv);
};
