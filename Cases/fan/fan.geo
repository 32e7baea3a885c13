// A fan in a duct, in metres: air, a rotating device around a solid hub, and two light-emitting
// devices on the floor of the duct that are to have no mesh of their own.
//
// The hub is longer than the device, so it touches the device and the air before and behind it.
// The hub ends in the air on either side; all of the device's other faces lie in the air.

SetFactory("OpenCASCADE");

DefineConstant[ size = {0.010, Name "Element size"} ];

length = 0.200; width = 0.080;
hub = 0.012; hub_start = 0.070; hub_length = 0.050;
rotor = 0.034; rotor_start = 0.085; rotor_length = 0.012;
e = 1e-5;  // slack of the boxes that entities are found by

Box(1) = {0, -width / 2, -width / 2, length, width, width};
Cylinder(2) = {hub_start, 0, 0, hub_length, 0, 0, hub};
Cylinder(10) = {rotor_start, 0, 0, rotor_length, 0, 0, rotor};
BooleanDifference(3) = { Volume{10}; Delete; }{ Volume{2}; };
Box(4) = {0.145, -0.020, -width / 2, 0.012, 0.012, 0.006};
Box(5) = {0.145, 0.008, -width / 2, 0.012, 0.012, 0.006};
BooleanDifference(6) = { Volume{1}; Delete; }{ Volume{2, 3, 4, 5}; };
BooleanFragments{ Volume{2, 3, 4, 5, 6}; Delete; }{ }

Physical Volume("hub") = {2};
Physical Volume("rotor") = {3};
Physical Volume("led_1") = {4};
Physical Volume("led_2") = {5};
Physical Volume("air") = {6};

half = width / 2 + e;
inlet() = Surface In BoundingBox {-e, -half, -half, e, half, half};
outlet() = Surface In BoundingBox {length - e, -half, -half, length + e, half, half};
led_tops() = Surface In BoundingBox {0.145 - e, -half, -0.034 - e, 0.157 + e, e, -0.034 + e};
Physical Surface("inlet") = {inlet()};
Physical Surface("outlet") = {outlet()};
Physical Surface("led_top") = {led_tops()};

MeshSize{ PointsOf{ Volume{2, 3}; } } = 0.7 * size;
MeshSize{ PointsOf{ Volume{4, 5}; } } = 0.4 * size;
Mesh.MeshSizeMax = size;
Mesh.MeshSizeFromCurvature = 16;
Mesh.Algorithm = 6;
