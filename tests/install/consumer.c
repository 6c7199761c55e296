#include <string.h>
#include <vrk.h>

int main(void) { return strcmp(vrk_get_version(), "1.3.4.3"); }
