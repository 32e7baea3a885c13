// How the view is turned, moved and brought nearer with the keyboard.

import { Spherical, Vector3 } from "three";

const turn = Math.PI / 24;
const step = 0.05; // of the distance
const nearer = 0.85;

const actions = {
    ArrowLeft: (view) => view.turn(-turn, 0),
    ArrowRight: (view) => view.turn(turn, 0),
    ArrowUp: (view) => view.turn(0, -turn),
    ArrowDown: (view) => view.turn(0, turn),
    "Shift ArrowLeft": (view) => view.move(-step, 0),
    "Shift ArrowRight": (view) => view.move(step, 0),
    "Shift ArrowUp": (view) => view.move(0, step),
    "Shift ArrowDown": (view) => view.move(0, -step),
    "+": (view) => view.approach(nearer),
    "=": (view) => view.approach(nearer),
    "-": (view) => view.approach(1 / nearer),
    0: (view) => view.fit(),
};

export class KeyboardView {
    constructor(camera, controls, fit) {
        this.camera = camera;
        this.controls = controls;
        this.fit = fit;
    }

    /** True if the key means something here. */
    press(event) {
        const isArrow = event.key.startsWith("Arrow");
        const action = actions[isArrow && event.shiftKey ? `Shift ${event.key}` : event.key];
        if (!action || event.ctrlKey || event.altKey || event.metaKey) {
            return false;
        }
        action(this);
        return true;
    }

    /** Goes round what is looked at, about the z axis and up or down. */
    turn(around, down) {
        const yUp = ({ x, y, z }) => new Vector3(x, z, -y);
        const zUp = ({ x, y, z }) => new Vector3(x, -z, y);
        const spherical = new Spherical().setFromVector3(yUp(this.offset()));
        spherical.theta += around;
        spherical.phi += down;
        this.lookFrom(zUp(new Vector3().setFromSpherical(spherical.makeSafe())));
    }

    move(right, above) {
        const distance = this.offset().length();
        const sideways = new Vector3().setFromMatrixColumn(this.camera.matrix, 0).multiplyScalar(right * distance);
        const upwards = new Vector3().setFromMatrixColumn(this.camera.matrix, 1).multiplyScalar(above * distance);
        const offset = this.offset();
        this.controls.target.add(sideways).add(upwards);
        this.lookFrom(offset);
    }

    approach(factor) {
        this.lookFrom(this.offset().multiplyScalar(factor));
    }

    offset() {
        return this.camera.position.clone().sub(this.controls.target);
    }

    lookFrom(offset) {
        this.camera.position.copy(this.controls.target).add(offset);
        this.controls.update();
    }
}
