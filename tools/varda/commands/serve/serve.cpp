// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "commands/serve/server.h"

namespace {

class Serve : public Command
{
public:
    Serve() : Command("serve", "Carry out requests of another program, in lines of JSON") { }

    void run(const Options &options) const override { Server(options).run(); }
};

} // namespace

void addServe(Commands &commands)
{
    commands.push_back(std::make_unique<Serve>());
}
