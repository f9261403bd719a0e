#define BUILDDATE "0"
