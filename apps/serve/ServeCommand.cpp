#include "ServeCommand.h"

#include "CommandLine.h"
#include "HostLanguage.h"

ServeCommand::ServeCommand(CLI::App& app)
{
    m_cmd = app.add_subcommand("serve", "Serve the chart viewer to the browser on this machine");
    m_cmd->add_option("scene", m_scene, "Scene file to open; \"save\" writes it back (created when new)");
    m_cmd->add_option("--port", m_port, "Port to listen on; 0 picks a free one")
        ->check(CommandLine::Decimal())
        ->check(CLI::Range(0, 65535))
        ->capture_default_str();
    m_cmd->add_option("--host", m_host, "Address to listen on (loopback unless --allow-remote)")->capture_default_str();
    m_cmd->add_flag("--allow-remote", m_allowRemote,
                    "Allow a --host other machines can reach; anyone there can then read and change the scene");
    HostLanguage::AddOption(*m_cmd, m_lang);
    m_cmd->footer("Examples:\n"
                  "  kygraph serve\n"
                  "  kygraph serve examples/scenes/summer-ahu.json --port 8090");
}
