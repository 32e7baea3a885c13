// An electronics enclosure, in metres: air, a board that is the floor, four chips of different
// heights, a finned heat sink on the largest, an inlet slot and a round fan opening.
//
// Air, chips and heat sink are tetrahedra. The board is extruded downwards from all that stands on
// it, in layers of wedges: its triangles face the air and the chips, and its quadrilaterals lie
// between its own parts and on the outside, where no tetrahedron meets them. So the mesh conforms.
// The board has one volume under each chip and one under the air.

SetFactory("OpenCASCADE");

DefineConstant[ size = {0.0050, Name "Element size"} ];

length = 0.160; width = 0.120; height = 0.050; board = 0.0016;
e = 1e-5;  // slack of the boxes that entities are found by

// Chips: corner, extent.
Box(1) = {0, 0, 0, length, width, height};
Box(2) = {0.055, 0.040, 0, 0.030, 0.030, 0.004};
Box(3) = {0.110, 0.020, 0, 0.024, 0.016, 0.003};
Box(4) = {0.110, 0.070, 0, 0.014, 0.022, 0.006};
Box(5) = {0.025, 0.085, 0, 0.012, 0.012, 0.010};

// Heat sink: a base that overhangs its chip, and five fins along the flow.
Box(6) = {0.050, 0.035, 0.004, 0.040, 0.040, 0.004};
fins[] = {};
For i In {0 : 4}
  Box(10 + i) = {0.050, 0.035 + 0.009 * i, 0.008, 0.040, 0.004, 0.022};
  fins[] += 10 + i;
EndFor
BooleanUnion(20) = { Volume{6}; Delete; }{ Volume{fins[]}; Delete; };
BooleanDifference(30) = { Volume{1}; Delete; }{ Volume{2, 3, 4, 5, 20}; };

// Openings, imprinted on the walls.
Rectangle(1001) = {0, 0, 0, 0.080, 0.010};
Rotate {{0, 0, 1}, {0, 0, 0}, Pi / 2} { Surface{1001}; }
Rotate {{0, 1, 0}, {0, 0, 0}, Pi / 2} { Surface{1001}; }
Translate {0, width / 2 - 0.040, 0.035} { Surface{1001}; }
Disk(1002) = {0, 0, 0, 0.016};
Rotate {{0, 1, 0}, {0, 0, 0}, Pi / 2} { Surface{1002}; }
Translate {length, width / 2, 0.028} { Surface{1002}; }
BooleanFragments{ Volume{2, 3, 4, 5, 20, 30}; Delete; }{ Surface{1001, 1002}; Delete; }

// The board under all of it.
floor() = Surface In BoundingBox {-e, -e, -e, length + e, width + e, e};
slab[] = Extrude {0, 0, -board} { Surface{floor()}; Layers{2}; Recombine; };
board_volumes() = Volume In BoundingBox {-e, -e, -board - e, length + e, width + e, e};
bottom() = Surface In BoundingBox {-e, -e, -board - e, length + e, width + e, -board + e};

Physical Volume("air") = {30};
Physical Volume("chip_1") = {2};
Physical Volume("chip_2") = {3};
Physical Volume("chip_3") = {4};
Physical Volume("chip_4") = {5};
Physical Volume("heat_sink") = {20};
Physical Volume("board") = {board_volumes()};

inlet() = Surface In BoundingBox {-e, 0.020 - e, 0.035 - e, e, 0.100 + e, 0.045 + e};
fan() = Surface In BoundingBox {length - e, 0.044 - e, 0.012 - e, length + e, 0.076 + e, 0.044 + e};
west() = Surface In BoundingBox {-e, -e, -e, e, width + e, height + e};
east() = Surface In BoundingBox {length - e, -e, -e, length + e, width + e, height + e};
south() = Surface In BoundingBox {-e, -e, -e, length + e, e, height + e};
north() = Surface In BoundingBox {-e, width - e, -e, length + e, width + e, height + e};
top() = Surface In BoundingBox {-e, -e, height - e, length + e, width + e, height + e};
west() -= inlet();
east() -= fan();
Physical Surface("inlet") = {inlet()};
Physical Surface("fan_opening") = {fan()};
Physical Surface("walls") = {west(), east(), south(), north(), top()};
Physical Surface("board_bottom") = {bottom()};
chip_tops() = Surface In BoundingBox {0.055 - e, 0.040 - e, 0.004 - e, 0.085 + e, 0.070 + e, 0.004 + e};
Physical Surface("thermal_joint") = {chip_tops()};

Mesh.MeshSizeMax = size;
Mesh.MeshSizeMin = 0.0010;
Mesh.Algorithm = 6;
