// The command vorel.
#include "tool/command_line.h"

int main(int count, char** arguments) {
  return vorel::tool::RunCommandLine(count, arguments);
}
