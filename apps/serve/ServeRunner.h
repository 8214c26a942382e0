// ServeRunner: runs the local web viewer with the options of `kygraph serve`. It lives in the
// viewer's own program, kygraph-serve, so that only serving loads the HTTP server and what it
// needs (TLS, compression); `kygraph serve` hands itself over to that program.
#pragma once

class ServeCommand;

class ServeRunner {
public:
    // Serves until SIGINT or SIGTERM. The exit status: 0 after a clean stop, 2 for a scene
    // that cannot be read or applied, 1 when the address cannot be bound. Prints the address
    // it serves as "KyGraph viewer: http://HOST:PORT/" on standard output.
    static int Run(const ServeCommand& options);
};
