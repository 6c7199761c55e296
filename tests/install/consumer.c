#include <string.h>
#include <vrk.h>

int main(void) {
  return strcmp(vrk_get_version(), "1.3.4.3") || vrk_create_preproc(NULL, 0, 0, 0, NULL, 0, NULL, 0, NULL) != 100;
}
