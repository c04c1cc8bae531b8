// The command-line tool, as a function that tests can call.
#pragma once
