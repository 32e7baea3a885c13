// A carriage of two blocks in a fluid, in metres: the blocks touch one another, move together, and
// stand on a rail that stays.
//
// The second block is smaller than the first, so the face that they touch in is a part of the
// first block's end.

SetFactory("OpenCASCADE");

DefineConstant[ size = {0.0070, Name "Element size"} ];

length = 0.160; width = 0.060; height = 0.050;

Box(1) = {0, 0, 0, length, width, height};
Box(2) = {0.020, 0.024, 0, 0.120, 0.012, 0.010};
Box(3) = {0.045, 0.018, 0.010, 0.030, 0.024, 0.018};
Box(4) = {0.075, 0.021, 0.010, 0.024, 0.018, 0.012};
BooleanDifference(5) = { Volume{1}; Delete; }{ Volume{2, 3, 4}; };
BooleanFragments{ Volume{2, 3, 4, 5}; Delete; }{ }

Physical Volume("rail") = {2};
Physical Volume("block_1") = {3};
Physical Volume("block_2") = {4};
Physical Volume("fluid") = {5};

MeshSize{ PointsOf{ Volume{2, 3, 4}; } } = 0.7 * size;
Mesh.MeshSizeMax = size;
Mesh.Algorithm = 6;
