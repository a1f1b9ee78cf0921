// tvhost's command line: what it reads and how it says what is wrong.
#pragma once

#include <string>
#include <vector>

struct TvhostOptions {
    // 0: a free port, chosen when tvhost starts.
    unsigned port = 8001;
    std::string library;
    // Clients reach the server over the network: the documents they save and
    // open stay below this folder.
    std::string files;
    bool help = false;
};

// The usage text, for --help and after a mistake.
std::string TvhostUsage(const std::string& program);

// Reads the arguments after the program's name into `options`, which holds
// the defaults. Empty when they read, else a sentence saying what is wrong.
std::string ParseTvhostOptions(const std::vector<std::string>& arguments, TvhostOptions& options);

// Empty when `folder` names an existing folder, else why it cannot be the files root.
std::string CheckFilesFolder(const std::string& folder);
